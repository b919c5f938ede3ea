// A list with columns, held as plain data: ordered rows, a key per row, at most one selected row.
// The list on the screen is a view of it. Rows and sub-items count from 1, sort keys from 0.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/controls/Controls.h"
#include "platform/controls/PackedTexts.h"
#include "platform/controls/RowIndex.h"

namespace velmora {

class ListView;

/// A text of a row beside its main text.
struct KeyedText {
    std::string_view key;
    std::string_view text;
};

/// One row: a main text and sub-items with a key each. All rows of a list have the same keys in the same
/// order, as many of them as they have sub-items. Texts are given as copies.
class ListItem {
public:
    ListItem(const ListItem&) = delete;
    ListItem& operator=(const ListItem&) = delete;

    std::string Text() const { return std::string(Cell(0)); }
    void SetText(const std::string& text) { SetCell(0, text); }

    /// By which the list finds the row; empty if it has none.
    std::string Key() const;

    /// The text of a sub-item. Throws ControlError if there is none of that key.
    std::string SubItem(std::string_view key) const { return std::string(Cell(ColumnOf(key))); }
    void SetSubItem(std::string_view key, const std::string& text) { SetCell(ColumnOf(key), text); }

    /// The text in a column, counted from 0: the main text, then the sub-items in their order; empty
    /// beyond the last. Valid until the row changes.
    std::string_view Cell(int column) const;

    /// Raised after a text of the row changed.
    Event<> Changed;

private:
    friend class ListView;
    ListItem(ListView& owner, const std::string& key, std::string_view text, const std::vector<KeyedText>& subItems);
    int ColumnOf(std::string_view key) const;
    void SetCell(int column, const std::string& text);

    ListView& owner_;
    PackedTexts texts_;  ///< How the key is kept, then the cells.
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
    ListItem* Find(const std::string& key) const;
    /// Appends a row, in a sorted list too: Sort() takes it to its place. Throws ControlError, and leaves the list
    /// alone, if another row has the key, or if the sub-items have not the keys that those of the other rows have.
    ListItem& Add(const std::string& key, std::string_view text, const std::vector<KeyedText>& subItems);
    /// Takes a row out; it is gone afterwards. If it was selected, no row is.
    void Remove(ListItem& row);

    /// From now on rows are found by their text in a column, counted from 0. Called before there is any row.
    void IndexBy(int column);
    /// The rows in whose indexed column this text stands, letter case ignored, in the list's order.
    std::vector<ListItem*> RowsWith(const std::string& text) const;

    ListItem* SelectedItem() const { return selected_; }
    /// Selects a row, or none with null. Throws ControlError if it is a row of another list.
    void Select(ListItem* row);

    // Sorting: by the text of column SortKey, without regard to letter case; rows that are equal
    // keep their order.
    Property<int> SortKey;
    Property<int> SortOrder;  ///< 0 ascending, 1 descending.
    Property<bool> Sorted;    ///< Setting it, or a key or order while it is set, sorts at once.
    /// Sorts now, if Sorted is set; the selected row stays selected. A new or changed row does not
    /// sort by itself. Raises RowsChanged for what changes its place: one row, or all.
    void Sort();

    /// The header of a column was clicked; the index counts from 1.
    Event<const ColumnHeader&> ColumnClick;

    // For the view: what has changed.
    Event<> ColumnsChanged;
    Event<int, int, int> RowsChanged;  ///< Position from 0, rows gone, rows new.
    Event<> SelectionChanged;

private:
    friend class ListItem;

    /// How the rows stand: in order; in order but for one of them; or nobody knows.
    enum class Order { Sorted, AllButOne, Unknown };

    std::size_t PositionOf(const ListItem& row) const;
    /// Refuses the keys of a row if they are not those of all rows.
    void NoteKeys(const std::vector<KeyedText>& subItems);
    // platform/controls/ListSorting.cpp
    void SetOrder(Order order, ListItem* outOfOrder = nullptr);
    void NoteOutOfOrder(ListItem& row);
    void SortOne(ListItem& row);
    void SortAll();

    std::vector<ColumnHeader> columns_;
    std::vector<std::string> subItemKeys_;  ///< Of all rows.
    std::vector<std::unique_ptr<ListItem>> rows_;
    RowIndex byKey_;
    int indexed_ = -1;  ///< The column by which rows are found, too; -1: none.
    RowIndex byText_;
    ListItem* selected_ = nullptr;
    Order order_ = Order::Sorted;
    ListItem* outOfOrder_ = nullptr;
};

}  // namespace velmora
