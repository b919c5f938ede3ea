#include "platform/controls/RowIndex.h"

#include <algorithm>
#include <utility>

namespace velmora {

namespace {

constexpr std::size_t kFewestSlots = 16;

}  // namespace

void RowIndex::Add(ListItem& row)
{
    if ((taken_ + 1) * 5 > slots_.rows.size() * 4) Grow();
    const std::uint32_t hash = HashOf(textOf_(row));
    const std::size_t slot = SlotOf(hash);
    if (slots_.rows[slot]) {
        further_[hash].insert(&row);
        return;
    }
    slots_.rows[slot] = &row;
    slots_.hashes[slot] = hash;
    ++taken_;
}

void RowIndex::Remove(ListItem& row)
{
    if (slots_.rows.empty()) return;
    const std::uint32_t hash = HashOf(textOf_(row));
    const std::size_t slot = SlotOf(hash);
    const bool isInSlot = slots_.rows[slot] == &row;
    const auto further = further_.find(hash);
    if (further == further_.end()) {
        if (isInSlot) Empty(slot);
        return;
    }
    if (isInSlot) slots_.rows[slot] = *further->second.begin();
    further->second.erase(isInSlot ? slots_.rows[slot] : &row);
    if (further->second.empty()) further_.erase(further);
}

std::vector<ListItem*> RowIndex::Find(const std::string& text) const
{
    std::vector<ListItem*> found;
    if (slots_.rows.empty()) return found;
    const std::uint32_t hash = HashOf(text);
    const auto take = [&](ListItem* row) {
        if (textOf_(*row) == text) found.push_back(row);
    };
    if (ListItem* const row = slots_.rows[SlotOf(hash)]) take(row);
    if (const auto further = further_.find(hash); further != further_.end()) {
        std::for_each(further->second.begin(), further->second.end(), take);
    }
    return found;
}

std::uint32_t RowIndex::HashOf(const std::string& text)
{
    return static_cast<std::uint32_t>(std::hash<std::string>{}(text));
}

std::size_t RowIndex::SlotOf(std::uint32_t hash) const
{
    std::size_t i = Wrapped(hash);
    while (slots_.rows[i] && slots_.hashes[i] != hash) i = Next(i);
    return i;
}

void RowIndex::Empty(std::size_t slot)
{
    --taken_;
    slots_.rows[slot] = nullptr;
    // What stands after it and was pushed on by it moves up, so that a search does not end at the gap.
    for (std::size_t i = Next(slot); slots_.rows[i]; i = Next(i)) {
        const std::size_t home = Wrapped(slots_.hashes[i]);
        if (Wrapped(i - home) < Wrapped(i - slot)) continue;
        slots_.rows[slot] = std::exchange(slots_.rows[i], nullptr);
        slots_.hashes[slot] = slots_.hashes[i];
        slot = i;
    }
}

void RowIndex::Grow()
{
    const std::size_t size = std::max(kFewestSlots, 2 * slots_.rows.size());
    Slots grown{std::vector<ListItem*>(size), std::vector<std::uint32_t>(size)};
    const Slots before = std::exchange(slots_, std::move(grown));
    for (std::size_t i = 0; i < before.rows.size(); ++i) {
        if (!before.rows[i]) continue;
        const std::size_t slot = SlotOf(before.hashes[i]);
        slots_.rows[slot] = before.rows[i];
        slots_.hashes[slot] = before.hashes[i];
    }
}

}  // namespace velmora
