// Finds the rows of a list by a text of theirs, in a time that does not grow with the list.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
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
    void Remove(const ListItem& row);
    /// The rows of a text, in no order.
    std::vector<ListItem*> Find(const std::string& text) const;

private:
    /// A row and the hash of its text; no row: a free slot.
    struct Slots {
        std::vector<ListItem*> rows;
        std::vector<std::uint32_t> hashes;
    };

    static std::uint32_t HashOf(const std::string& text);
    void Put(ListItem* row, std::uint32_t hash);
    std::size_t Next(std::size_t i) const { return (i + 1) % slots_.rows.size(); }
    void Grow();

    TextOf textOf_;
    Slots slots_;
    std::size_t count_ = 0;
};

}  // namespace velmora
