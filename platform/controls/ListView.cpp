#include "platform/controls/ListView.h"

#include <algorithm>
#include <utility>

#include "platform/text/Search.h"

namespace velmora {

namespace {

// Where among its texts a row keeps its key, and from where on its cells.
constexpr std::size_t kKeptKey = 0;
constexpr std::size_t kFirstText = 1;

// How a key is kept: none, as it is behind this mark, or as the number of a cell and a length in bytes.
// The keys of addresses are their own beginnings in lower case, as a rule.
constexpr char kOwnText = '=';
constexpr char kFirstCell = 'a';
constexpr std::size_t kMostCells = 26;

std::size_t PlaceOf(int column) { return static_cast<std::size_t>(column) + kFirstText; }

/// How a key is kept beside the texts of a row.
std::string KeptKey(const std::string& key, const std::vector<std::string_view>& texts)
{
    if (key.empty()) return {};
    for (std::size_t i = kFirstText; i < std::min(texts.size(), kFirstText + kMostCells); ++i) {
        if (texts[i].size() < key.size() || LowerCase(texts[i].substr(0, key.size())) != key) continue;
        const auto cell = static_cast<char>(kFirstCell + static_cast<char>(i - kFirstText));
        return cell + std::to_string(key.size());
    }
    return kOwnText + key;
}

PackedTexts Packed(const std::string& key, std::string_view text, const std::vector<KeyedText>& subItems)
{
    std::vector<std::string_view> texts{{}, text};
    texts.reserve(texts.size() + subItems.size());
    for (const KeyedText& item : subItems) texts.push_back(item.text);
    const std::string kept = KeptKey(key, texts);
    texts[kKeptKey] = kept;
    return PackedTexts(texts);
}

}  // namespace

// --- ListItem -------------------------------------------------------------------------------------

ListItem::ListItem(ListView& owner, const std::string& key, std::string_view text,
                   const std::vector<KeyedText>& subItems)
    : owner_(owner), texts_(Packed(key, text, subItems))
{
}

std::string ListItem::Key() const
{
    const std::string_view kept = texts_.At(kKeptKey);
    if (kept.empty()) return {};
    if (kept[0] == kOwnText) return std::string(kept.substr(1));
    return LowerCase(Cell(kept[0] - kFirstCell).substr(0, std::stoul(std::string(kept.substr(1)))));
}

std::string_view ListItem::Cell(int column) const
{
    const std::size_t place = PlaceOf(column);
    return column >= 0 && place < texts_.Count() ? texts_.At(place) : std::string_view();
}

int ListItem::ColumnOf(std::string_view key) const
{
    const auto& keys = owner_.subItemKeys_;
    const auto hit = std::find(keys.begin(), keys.end(), key);
    const int column = static_cast<int>(hit - keys.begin()) + 1;
    if (hit == keys.end() || PlaceOf(column) >= texts_.Count()) throw ControlError("the row has no such sub-item");
    return column;
}

void ListItem::SetCell(int column, const std::string& text)
{
    if (text == Cell(column)) return;
    const std::string key = Key();
    if (column == owner_.indexed_) owner_.byText_.Remove(*this);
    texts_.Set(PlaceOf(column), text);
    if (Key() != key) texts_.Set(kKeptKey, KeptKey(key, texts_.All()));
    if (column == owner_.indexed_) owner_.byText_.Add(*this);
    if (column == owner_.SortKey()) owner_.NoteOutOfOrder(*this);
    Changed.Raise();
}

// --- ListView -------------------------------------------------------------------------------------

ListView::ListView(Container& parent, std::string name)
    : Control(parent, std::move(name)), byKey_([](const ListItem& row) { return row.Key(); }),
      byText_([this](const ListItem& row) { return LowerCase(row.Cell(indexed_)); })
{
    const auto sortAnew = [this] {
        SetOrder(Order::Unknown);
        Sort();
    };
    SortKey.Changed.Add(sortAnew);
    SortOrder.Changed.Add(sortAnew);
    Sorted.Changed.Add([this] { Sort(); });
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

ListItem* ListView::Find(const std::string& key) const
{
    const auto found = key.empty() ? std::vector<ListItem*>() : byKey_.Find(key);
    return found.empty() ? nullptr : found.front();
}

ListItem& ListView::Add(const std::string& key, std::string_view text, const std::vector<KeyedText>& subItems)
{
    if (Find(key)) throw ControlError("a row of the list has that key already");
    NoteKeys(subItems);
    ListItem& row = *rows_.emplace_back(new ListItem(*this, key, text, subItems));
    if (!key.empty()) byKey_.Add(row);
    if (indexed_ >= 0 && indexed_ <= static_cast<int>(subItems.size())) byText_.Add(row);
    NoteOutOfOrder(row);
    RowsChanged.Raise(Count() - 1, 0, 1);
    return row;
}

void ListView::Remove(ListItem& row)
{
    const std::size_t position = PositionOf(row);
    if (!row.Key().empty()) byKey_.Remove(row);
    byText_.Remove(row);
    if (outOfOrder_ == &row) SetOrder(Order::Sorted);
    const auto place = rows_.begin() + static_cast<std::ptrdiff_t>(position);
    // The row lives until every listener has heard that it goes.
    const std::unique_ptr<ListItem> gone = std::move(*place);
    rows_.erase(place);
    const bool wasSelected = selected_ == &row;
    if (wasSelected) selected_ = nullptr;
    RowsChanged.Raise(static_cast<int>(position), 1, 0);
    if (wasSelected) SelectionChanged.Raise();
}

void ListView::IndexBy(int column) { indexed_ = column; }

std::vector<ListItem*> ListView::RowsWith(const std::string& text) const
{
    std::vector<ListItem*> found = byText_.Find(LowerCase(text));
    if (found.size() < 2) return found;
    std::sort(found.begin(), found.end());
    std::vector<ListItem*> inOrder;
    for (const auto& row : rows_) {
        if (std::binary_search(found.begin(), found.end(), row.get())) inOrder.push_back(row.get());
    }
    return inOrder;
}

void ListView::Select(ListItem* row)
{
    if (row == selected_) return;
    if (row && &row->owner_ != this) throw ControlError("the row is not in the list");
    selected_ = row;
    SelectionChanged.Raise();
}

void ListView::NoteKeys(const std::vector<KeyedText>& subItems)
{
    const std::size_t known = subItemKeys_.size();
    for (std::size_t i = 0; i < subItems.size(); ++i) {
        const auto isSame = [&](const KeyedText& other) { return other.key == subItems[i].key; };
        const auto end = subItems.begin() + static_cast<std::ptrdiff_t>(i);
        const bool isRefused =
            i < known ? subItemKeys_[i] != subItems[i].key : std::any_of(subItems.begin(), end, isSame);
        if (isRefused) throw ControlError("the row cannot have that sub-item there");
    }
    for (std::size_t i = known; i < subItems.size(); ++i) subItemKeys_.emplace_back(subItems[i].key);
}

std::size_t ListView::PositionOf(const ListItem& row) const
{
    const auto hit = std::find_if(rows_.begin(), rows_.end(), [&](const auto& each) { return each.get() == &row; });
    if (hit == rows_.end()) throw ControlError("the row is not in the list");
    return static_cast<std::size_t>(hit - rows_.begin());
}

}  // namespace velmora
