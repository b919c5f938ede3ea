#include "platform/controls/ListView.h"

#include <algorithm>

#include "platform/text/Search.h"

namespace velmora {

// --- ListItem -------------------------------------------------------------------------------------

void ListItem::SetText(std::string text)
{
    if (text == text_) return;
    text_ = std::move(text);
    Changed.Raise();
}

void ListItem::SetKey(const std::string& key)
{
    if (key == key_) return;
    if (!key.empty() && !owner_.byKey_.try_emplace(key, this).second) {
        throw ControlError("a row of the list has that key already");
    }
    if (!key_.empty()) owner_.byKey_.erase(key_);
    key_ = key;
}

void ListItem::AddSubItem(const std::string& key, std::string text)
{
    if (Find(key)) throw ControlError("the row has that sub-item already");
    subItems_.emplace_back(key, std::move(text));
    Changed.Raise();
}

const std::string& ListItem::SubItem(std::string_view key) const
{
    for (const auto& [name, text] : subItems_) {
        if (name == key) return text;
    }
    throw ControlError("the row has no such sub-item");
}

void ListItem::SetSubItem(std::string_view key, std::string text)
{
    std::string* const present = Find(key);
    if (!present) throw ControlError("the row has no such sub-item");
    if (text == *present) return;
    *present = std::move(text);
    Changed.Raise();
}

const std::string& ListItem::Cell(int column) const
{
    static const std::string kEmpty;
    if (column == 0) return text_;
    const auto i = static_cast<std::size_t>(column) - 1;
    return column > 0 && i < subItems_.size() ? subItems_[i].second : kEmpty;
}

std::string* ListItem::Find(std::string_view key)
{
    for (auto& [name, text] : subItems_) {
        if (name == key) return &text;
    }
    return nullptr;
}

// --- ListView -------------------------------------------------------------------------------------

ListView::ListView(Container& parent, std::string name) : Control(parent, std::move(name))
{
    const auto sort = [this] { Sort(); };
    SortKey.Changed.Add(sort);
    SortOrder.Changed.Add(sort);
    Sorted.Changed.Add(sort);
}

void ListView::ClearColumnHeaders()
{
    columns_.clear();
    ColumnsChanged.Raise();
}

void ListView::AddColumnHeader(std::string caption, Twips width)
{
    columns_.push_back({static_cast<int>(columns_.size()) + 1, std::move(caption), width});
    ColumnsChanged.Raise();
}

ListItem& ListView::Item(int i)
{
    if (i < 1 || i > Count()) throw ControlError("no such row");
    return *rows_[static_cast<std::size_t>(i - 1)];
}

ListItem* ListView::Find(const std::string& key)
{
    const auto hit = byKey_.find(key);
    return hit == byKey_.end() ? nullptr : hit->second;
}

ListItem& ListView::Add()
{
    ListItem& row = *rows_.emplace_back(std::make_unique<ListItem>(*this));
    RowsChanged.Raise(Count() - 1, 0, 1);
    return row;
}

void ListView::Remove(ListItem& row)
{
    const std::size_t position = PositionOf(row);
    row.SetKey({});
    const auto place = rows_.begin() + static_cast<std::ptrdiff_t>(position);
    // The row lives until every listener has heard that it goes.
    const std::unique_ptr<ListItem> gone = std::move(*place);
    rows_.erase(place);
    const bool wasSelected = selected_ == &row;
    if (wasSelected) selected_ = nullptr;
    RowsChanged.Raise(static_cast<int>(position), 1, 0);
    if (wasSelected) SelectionChanged.Raise();
}

void ListView::Select(ListItem* row)
{
    if (row == selected_) return;
    if (row && &row->owner_ != this) throw ControlError("the row is not in the list");
    selected_ = row;
    SelectionChanged.Raise();
}

void ListView::Sort()
{
    if (!Sorted()) return;
    struct Entry {
        std::string text;
        std::size_t position;
    };
    std::vector<Entry> order;
    order.reserve(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i) order.push_back({LowerCase(rows_[i]->Cell(SortKey())), i});

    const auto before = [descending = SortOrder() != 0](const Entry& a, const Entry& b) {
        return descending ? b.text < a.text : a.text < b.text;
    };
    if (std::is_sorted(order.begin(), order.end(), before)) return;
    std::stable_sort(order.begin(), order.end(), before);

    std::vector<std::unique_ptr<ListItem>> sorted;
    sorted.reserve(rows_.size());
    for (const Entry& entry : order) sorted.push_back(std::move(rows_[entry.position]));
    rows_ = std::move(sorted);
    RowsChanged.Raise(0, Count(), Count());
}

std::size_t ListView::PositionOf(const ListItem& row) const
{
    const auto hit = std::find_if(rows_.begin(), rows_.end(), [&](const auto& each) { return each.get() == &row; });
    if (hit == rows_.end()) throw ControlError("the row is not in the list");
    return static_cast<std::size_t>(hit - rows_.begin());
}

}  // namespace velmora
