// Several texts in one piece of memory: rows of texts may be many, and most of a short text would be its
// own keeping.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string_view>

namespace velmora {

/// Texts that count from 0; none at first.
class PackedTexts {
public:
    static constexpr std::size_t kMost = 32;

    std::size_t Count() const;
    /// Text i, empty if there is none; valid until a text is set or added.
    std::string_view At(std::size_t i) const;
    void Set(std::size_t i, std::string_view text);
    /// Adds a text at the end. Throws std::length_error for one more than kMost.
    void Add(std::string_view text);

private:
    using Views = std::array<std::string_view, kMost>;

    /// All texts, and empty views behind them.
    Views Unpacked() const;
    /// Packs the first `count` of the texts.
    void Pack(std::size_t count, const Views& texts);

    std::unique_ptr<unsigned char[]> bytes_;  ///< Their number, their lengths (LEB128), the texts; null: none.
};

}  // namespace velmora
