// How a list keeps its rows in order. One row that came or changed finds its place by itself; all rows are
// sorted only when the column or the direction has changed.
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "platform/controls/ListView.h"
#include "platform/text/Search.h"

namespace velmora {

namespace {

/// A row on its way to its place: what it is sorted by, and where it stood.
struct Entry {
    std::string_view text;
    std::uint64_t head;  ///< The first bytes in which texts differ, as a number of the same order.
    std::size_t position;
};

constexpr std::size_t kHeadBytes = sizeof(std::uint64_t);

std::uint64_t HeadOf(std::string_view text)
{
    std::uint64_t head = 0;
    for (std::size_t i = 0; i < kHeadBytes; ++i) {
        head = head << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    }
    return head;
}

std::size_t CommonBytes(std::string_view a, std::string_view b)
{
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

/// The order of two texts that differ, or of two positions.
bool IsBefore(const Entry& a, const Entry& b, bool isDescending)
{
    if (a.head != b.head) return (a.head < b.head) != isDescending;
    const int order = a.text.compare(b.text);
    return order == 0 ? a.position < b.position : (order < 0) != isDescending;
}

}  // namespace

void ListView::SetOrder(Order order, ListItem* outOfOrder)
{
    order_ = order;
    outOfOrder_ = outOfOrder;
}

void ListView::NoteOutOfOrder(ListItem& row)
{
    if (order_ == Order::Sorted) return SetOrder(Order::AllButOne, &row);
    if (outOfOrder_ != &row) SetOrder(Order::Unknown);
}

void ListView::Sort()
{
    if (!Sorted()) return;
    const Order before = order_;
    ListItem* const row = outOfOrder_;
    SetOrder(Order::Sorted);
    if (before == Order::AllButOne) SortOne(*row);
    if (before == Order::Unknown) SortAll();
}

void ListView::SortOne(ListItem& row)
{
    const auto textOf = [this](const ListItem& each) { return LowerCase(each.Cell(SortKey())); };
    const auto isBefore = [descending = SortOrder() != 0](const std::string& a, const std::string& b) {
        return descending ? b < a : a < b;
    };
    const std::size_t from = PositionOf(row);
    std::unique_ptr<ListItem> taken = std::move(rows_[from]);
    rows_.erase(rows_.begin() + static_cast<std::ptrdiff_t>(from));

    const std::string text = textOf(row);
    const auto first = std::lower_bound(rows_.begin(), rows_.end(), text, [&](const auto& each, const auto& wanted) {
        return isBefore(textOf(*each), wanted);
    });
    const auto last = std::upper_bound(first, rows_.end(), text, [&](const auto& wanted, const auto& each) {
        return isBefore(wanted, textOf(*each));
    });
    // Among its equals it stands as it did: behind those that it stood behind.
    const std::size_t to = std::clamp(from, static_cast<std::size_t>(first - rows_.begin()),
                                      static_cast<std::size_t>(last - rows_.begin()));
    if (to != from) RowsChanged.Raise(static_cast<int>(from), 1, 0);
    rows_.insert(rows_.begin() + static_cast<std::ptrdiff_t>(to), std::move(taken));
    if (to != from) RowsChanged.Raise(static_cast<int>(to), 0, 1);
}

void ListView::SortAll()
{
    if (rows_.empty()) return;
    std::string texts;
    std::vector<std::size_t> ends;
    ends.reserve(rows_.size());
    for (const auto& row : rows_) {
        texts += LowerCase(row->Cell(SortKey()));
        ends.push_back(texts.size());
    }
    std::vector<Entry> entries;
    entries.reserve(rows_.size());
    std::size_t common = ends.front();
    for (std::size_t i = 0, begin = 0; i < ends.size(); begin = ends[i++]) {
        entries.push_back({std::string_view(texts).substr(begin, ends[i] - begin), 0, i});
        common = std::min(common, CommonBytes(entries.front().text, entries.back().text));
    }
    for (Entry& entry : entries) entry.head = HeadOf(entry.text.substr(common));

    const auto isBefore = [descending = SortOrder() != 0](const Entry& a, const Entry& b) {
        return IsBefore(a, b, descending);
    };
    if (std::is_sorted(entries.begin(), entries.end(), isBefore)) return;
    std::sort(entries.begin(), entries.end(), isBefore);

    std::vector<std::unique_ptr<ListItem>> sorted;
    sorted.reserve(rows_.size());
    for (const Entry& entry : entries) sorted.push_back(std::move(rows_[entry.position]));
    rows_ = std::move(sorted);
    RowsChanged.Raise(0, Count(), Count());
}

}  // namespace velmora
