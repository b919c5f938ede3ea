#include "platform/controls/RowIndex.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

constexpr std::size_t kFewestSlots = 16;

}  // namespace

void RowIndex::Add(ListItem& row)
{
    if ((count_ + 1) * 5 > slots_.rows.size() * 4) Grow();
    Put(&row, HashOf(textOf_(row)));
    ++count_;
}

void RowIndex::Remove(const ListItem& row)
{
    if (slots_.rows.empty()) return;
    std::size_t free = HashOf(textOf_(row)) % slots_.rows.size();
    while (slots_.rows[free] != &row) {
        if (!slots_.rows[free]) return;
        free = Next(free);
    }
    --count_;
    slots_.rows[free] = nullptr;
    // What stands after it and was pushed on by it moves up, so that a search does not end at the gap.
    const std::size_t size = slots_.rows.size();
    for (std::size_t i = Next(free); slots_.rows[i]; i = Next(i)) {
        const std::size_t home = slots_.hashes[i] % size;
        if ((i + size - home) % size < (i + size - free) % size) continue;
        slots_.rows[free] = std::exchange(slots_.rows[i], nullptr);
        slots_.hashes[free] = slots_.hashes[i];
        free = i;
    }
}

std::vector<ListItem*> RowIndex::Find(const std::string& text) const
{
    std::vector<ListItem*> found;
    if (slots_.rows.empty()) return found;
    const std::uint32_t hash = HashOf(text);
    for (std::size_t i = hash % slots_.rows.size(); slots_.rows[i]; i = Next(i)) {
        if (slots_.hashes[i] == hash && textOf_(*slots_.rows[i]) == text) found.push_back(slots_.rows[i]);
    }
    return found;
}

std::uint32_t RowIndex::HashOf(const std::string& text)
{
    return static_cast<std::uint32_t>(std::hash<std::string>{}(text));
}

void RowIndex::Put(ListItem* row, std::uint32_t hash)
{
    std::size_t i = hash % slots_.rows.size();
    while (slots_.rows[i]) i = Next(i);
    slots_.rows[i] = row;
    slots_.hashes[i] = hash;
}

void RowIndex::Grow()
{
    const std::size_t size = std::max(kFewestSlots, 2 * slots_.rows.size());
    Slots grown{std::vector<ListItem*>(size), std::vector<std::uint32_t>(size)};
    const Slots before = std::exchange(slots_, std::move(grown));
    for (std::size_t i = 0; i < before.rows.size(); ++i) {
        if (before.rows[i]) Put(before.rows[i], before.hashes[i]);
    }
}

}  // namespace velmora
