// A list with columns, held as plain data: ordered rows, a key per row, at most one selected row.
// The list on the screen is a view of it. Rows and sub-items count from 1, sort keys from 0.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/controls/Controls.h"

namespace velmora {

class ListView;

/// One row: a main text and sub-items with a key each.
class ListItem {
public:
    explicit ListItem(ListView& owner) : owner_(owner) {}
    ListItem(const ListItem&) = delete;
    ListItem& operator=(const ListItem&) = delete;

    const std::string& Text() const { return text_; }
    void SetText(std::string text);

    const std::string& Key() const { return key_; }
    /// Sets the key; an empty text takes the key away. Throws ControlError, and keeps the old key,
    /// if another row of the list has it.
    void SetKey(const std::string& key);

    /// Appends a sub-item. Throws ControlError if the row has that key already.
    void AddSubItem(const std::string& key, std::string text);
    /// The text of a sub-item. Throws ControlError if there is none of that key.
    const std::string& SubItem(std::string_view key) const;
    void SetSubItem(std::string_view key, std::string text);

    /// The text in a column, counted from 0: the main text, then the sub-items in their order; empty
    /// beyond the last.
    const std::string& Cell(int column) const;

    /// Raised after a text of the row changed.
    Event<> Changed;

private:
    friend class ListView;
    std::string* Find(std::string_view key);

    ListView& owner_;
    std::string text_;
    std::string key_;
    std::vector<std::pair<std::string, std::string>> subItems_;
};

struct ColumnHeader {
    int Index;  ///< From 1.
    std::string Caption;
    Twips Width;
};

class ListView : public Control {
public:
    ListView(Container& parent, std::string name);

    // Columns.
    const std::vector<ColumnHeader>& ColumnHeaders() const { return columns_; }
    void ClearColumnHeaders();
    void AddColumnHeader(std::string caption, Twips width);

    // Rows.
    int Count() const { return static_cast<int>(rows_.size()); }
    /// Row i, counted from 1. Throws ControlError for any other.
    ListItem& Item(int i);
    /// The row of a key, found in constant time; null if there is none. An empty text is no key.
    ListItem* Find(const std::string& key);
    /// Appends an empty row, in a sorted list too: whoever fills it calls Sort() when it is complete.
    ListItem& Add();
    /// Takes a row out; it is gone afterwards. If it was selected, no row is.
    void Remove(ListItem& row);

    ListItem* SelectedItem() const { return selected_; }
    /// Selects a row, or none with null. Throws ControlError if it is a row of another list.
    void Select(ListItem* row);

    // Sorting: by the text of column SortKey, without regard to letter case; rows that are equal
    // keep their order.
    Property<int> SortKey;
    Property<int> SortOrder;  ///< 0 ascending, 1 descending.
    Property<bool> Sorted;    ///< Setting it, or a key or order while it is set, sorts at once.
    /// Sorts now, if Sorted is set; the selected row stays selected. A new or changed row does not
    /// sort by itself. Raises RowsChanged for all rows, and not at all if the order was right already.
    void Sort();

    /// The header of a column was clicked; the index counts from 1.
    Event<const ColumnHeader&> ColumnClick;

    // For the view: what has changed.
    Event<> ColumnsChanged;
    Event<int, int, int> RowsChanged;  ///< Position from 0, rows gone, rows new.
    Event<> SelectionChanged;

private:
    friend class ListItem;
    std::size_t PositionOf(const ListItem& row) const;

    std::vector<ColumnHeader> columns_;
    std::vector<std::unique_ptr<ListItem>> rows_;
    std::unordered_map<std::string, ListItem*> byKey_;
    ListItem* selected_ = nullptr;
};

}  // namespace velmora
