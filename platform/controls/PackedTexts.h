// Several texts in one piece of memory: rows of texts may be many, and most of a short text would be its
// own keeping.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace velmora {

/// Texts that count from 0.
class PackedTexts {
public:
    static constexpr std::size_t kMost = 32;

    /// Throws std::length_error for more than kMost.
    explicit PackedTexts(const std::vector<std::string_view>& texts);

    std::size_t Count() const;
    /// Text i, empty if there is none; valid until a text is set.
    std::string_view At(std::size_t i) const;
    /// All texts; valid as long as each.
    std::vector<std::string_view> All() const;
    void Set(std::size_t i, std::string_view text);

private:
    std::unique_ptr<unsigned char[]> bytes_;  ///< Their number, their lengths (LEB128), the texts.
};

}  // namespace velmora
