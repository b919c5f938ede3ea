// Finds the rows of a list by a text of theirs, in a time that does not grow with the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace velmora {

class ListItem;

/// A hash table that keeps of each row its place in memory and no text. Several rows may have one text;
/// an empty text is one like any other.
class RowIndex {
public:
    using TextOf = std::function<std::string(const ListItem&)>;

    explicit RowIndex(TextOf textOf) : textOf_(std::move(textOf)) {}

    void Add(ListItem& row);
    /// Takes a row out, as long as it has the text under which it was added; none is taken if it is not there.
    void Remove(ListItem& row);
    /// The rows of a text, in no order.
    std::vector<ListItem*> Find(const std::string& text) const;

private:
    /// One row for each hash of a text; no row: a free slot.
    struct Slots {
        std::vector<ListItem*> rows;
        std::vector<std::uint32_t> hashes;
    };

    static std::uint32_t HashOf(const std::string& text);
    /// The slot of a number that counts on behind the last; the slots are as many as a power of two.
    std::size_t Wrapped(std::size_t i) const { return i & (slots_.rows.size() - 1); }
    std::size_t Next(std::size_t i) const { return Wrapped(i + 1); }
    /// The slot of a hash, or the free one that it would take. There must be slots.
    std::size_t SlotOf(std::uint32_t hash) const;
    void Empty(std::size_t slot);
    void Grow();

    TextOf textOf_;
    Slots slots_;
    std::size_t taken_ = 0;
    /// All further rows of a hash. In slots of their own, each would be looked for behind all its equals.
    std::unordered_map<std::uint32_t, std::unordered_set<ListItem*>> further_;
};

}  // namespace velmora
