#include "platform/desktop/ListTable.h"

#include <gtkmm/columnviewcolumn.h>
#include <gtkmm/gestureclick.h>
#include <gtkmm/label.h>
#include <gtkmm/root.h>
#include <gtkmm/signallistitemfactory.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Caption.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/ListModel.h"
#include "platform/desktop/Pixels.h"
#include "platform/desktop/ViewContext.h"

namespace velmora {
namespace {

constexpr int kTitleInset = 9;    // Padding and border of a column's title, as the style sheet has them.
constexpr int kTitleHeight = 15;  // Room for one line of type.

/// A row is called by its first cells: what comes after them, passwords among it, is not said aloud unasked.
constexpr int kSpokenCells = 3;

/// One cell; follows the row that it shows.
class Cell : public Gtk::Label {
public:
    explicit Cell(int column) : column_(column)
    {
        set_single_line_mode(true);
        set_ellipsize(Pango::EllipsizeMode::END);
        set_xalign(0);
        SetAccessibleName(*this, {});
    }

    void Bind(RowObject& place)
    {
        Follow(place.Row());
        exchanged_ = place.RowChanged.Connect([this, &place] { Follow(place.Row()); });
    }
    void Unbind()
    {
        exchanged_.Reset();
        Follow(nullptr);
    }
    const ListItem* Row() const { return row_; }

private:
    void Follow(ListItem* row)
    {
        row_ = row;
        changed_.Reset();
        if (!row) return;
        Show(*row);
        changed_ = row->Changed.Connect([this, row] { Show(*row); });
    }

    void Show(const ListItem& row)
    {
        const Glib::ustring text = OneLine(std::string(row.Cell(column_)));
        if (text != get_text()) set_text(text);
        Gtk::Widget* const place = get_parent();
        if (!place) return;
        SetAccessibleName(*place, text);
        Gtk::Widget* const line = place->get_parent();
        if (line && column_ == 0) SetAccessibleName(*line, SpokenText(row));
    }

    static Glib::ustring SpokenText(const ListItem& row)
    {
        Glib::ustring text;
        for (int i = 0; i < kSpokenCells; ++i) {
            const Glib::ustring cell = OneLine(std::string(row.Cell(i)));
            if (!text.empty() && !cell.empty()) text += ", ";
            text += cell;
        }
        return text;
    }

    const int column_;
    const ListItem* row_ = nullptr;
    Subscription exchanged_, changed_;
};

/// The first widget of a kind inside a widget of the toolkit, itself included; null if there is none.
template <class Kind>
Kind* FindInside(Gtk::Widget& widget)
{
    if (auto* found = dynamic_cast<Kind*>(&widget)) return found;
    for (Gtk::Widget* child = widget.get_first_child(); child; child = child->get_next_sibling()) {
        if (Kind* found = FindInside<Kind>(*child)) return found;
    }
    return nullptr;
}

Glib::RefPtr<Gtk::ListItemFactory> CellFactory(int column)
{
    auto factory = Gtk::SignalListItemFactory::create();
    factory->signal_setup().connect([column](const Glib::RefPtr<Gtk::ListItem>& place) {
        place->set_child(*Gtk::make_managed<Cell>(column));
        // Newer toolkits let the keyboard into each cell of a row.
        GObject* const object = G_OBJECT(place->gobj());
        const bool isKnown = g_object_class_find_property(G_OBJECT_GET_CLASS(object), "focusable");
        if (isKnown) g_object_set(object, "focusable", FALSE, nullptr);
    });
    factory->signal_bind().connect([](const Glib::RefPtr<Gtk::ListItem>& place) {
        auto* cell = dynamic_cast<Cell*>(place->get_child());
        const auto object = std::dynamic_pointer_cast<RowObject>(place->get_item());
        if (cell && object) cell->Bind(*object);
    });
    factory->signal_unbind().connect([](const Glib::RefPtr<Gtk::ListItem>& place) {
        if (auto* cell = dynamic_cast<Cell*>(place->get_child())) cell->Unbind();
    });
    return factory;
}

}  // namespace

ListTable::ListTable(velmora::ListView& list)
    : list_(list), columns_(*Gtk::make_managed<Gtk::ColumnView>()),
      keys_(
          columns_, [this] { return IsAtTop(); }, [this](int column) { PressTitle(column); })
{
    add_css_class("list");
    columns_.set_model(ListModel::Create(list));
    HideScrollBars(*this);
    SetAccessibleName(*columns_.get_first_child(), "Column titles");
    SetAccessibleName(*columns_.get_last_child(), DisplayText(list.AccessibleName()));
    columns_.set_reorderable(false);
    // The columns are wider than the list as a rule: the bar that leads to them is always to be seen.
    set_overlay_scrolling(false);
    set_child(columns_);
    RebuildColumns();
    columnsChanged_ = list.ColumnsChanged.Connect([this] { RebuildColumns(); });
}

void ListTable::RebuildColumns()
{
    keys_.Clear();
    const auto present = columns_.get_columns();
    while (present->get_n_items() > 0) {
        columns_.remove_column(std::dynamic_pointer_cast<Gtk::ColumnViewColumn>(present->get_object(0)));
    }
    for (const ColumnHeader& header : list_.ColumnHeaders()) AddColumn(header);
}

void ListTable::AddColumn(const ColumnHeader& header)
{
    auto column = Gtk::ColumnViewColumn::create(OneLine(header.Caption), CellFactory(header.Index - 1));
    column->set_fixed_width(Edge(header.Width));
    column->set_resizable(true);
    columns_.append_column(column);
    if (Gtk::Widget* title = NewestTitle()) {
        title->set_name(list_.Name + "Column" + std::to_string(header.Index));
        // Older toolkits tell a column's title as nothing in particular; it can be pressed.
        if (gtk_get_minor_version() < 12 && !columns_.get_mapped()) {
            SetAccessibleRole(*title, Gtk::Accessible::Role::BUTTON);
        }
        SetAccessibleName(*title, OneLine(header.Caption));
        WatchClicks(*title, header.Index);
        keys_.Add(*title);
        FitTitle(*title, Edge(header.Width));
    }
}

Gtk::Widget* ListTable::NewestTitle()
{
    // The header is the first child of a column view; the title of the newest column is its last.
    Gtk::Widget* const header = columns_.get_first_child();
    return header ? header->get_last_child() : nullptr;
}

void ListTable::FitTitle(Gtk::Widget& title, int width)
{
    Gtk::Label* const label = FindInside<Gtk::Label>(title);
    if (!label) return;
    label->signal_map().connect([label, width] { FitCaption(*label, width - kTitleInset, kTitleHeight); });
}

void ListTable::WatchClicks(Gtk::Widget& title, int column)
{
    auto click = Gtk::GestureClick::create();
    click->set_button(GDK_BUTTON_PRIMARY);
    // A drag of the column's border is claimed by the column view and never arrives here as a click.
    click->signal_released().connect([this, &title, column](int, double x, double y) {
        if (title.contains(x, y)) PressTitle(column);
    });
    // Newer toolkits' titles claim the click for themselves: what is in one group has it together.
    const auto others = title.observe_controllers();
    title.add_controller(click);
    for (guint i = 0; i < others->get_n_items(); ++i) {
        const auto other = std::dynamic_pointer_cast<Gtk::GestureClick>(others->get_object(i));
        if (other && other != click) click->group(other);
    }
}

bool ListTable::TakeFocus(Gtk::DirectionType direction)
{
    // The rows are the view's last child; the titles' row is the first.
    Gtk::Widget* const rows = columns_.get_last_child();
    return columns_.child_focus(direction) || (rows && rows->grab_focus());
}

bool ListTable::IsAtTop()
{
    Gtk::Widget* const focus = HoldsFocus(columns_) ? get_root()->get_focus() : nullptr;
    const Cell* const cell = focus && focus != columns_.get_last_child() ? FindInside<Cell>(*focus) : nullptr;
    return !cell || list_.Count() == 0 || cell->Row() == &list_.Item(1);
}

void ListTable::PressTitle(int column)
{
    const auto& headers = list_.ColumnHeaders();
    const auto i = static_cast<std::size_t>(column - 1);
    if (i >= headers.size()) return;
    const ColumnHeader pressed = headers[i];
    list_.ColumnClick.Raise(pressed);
}

}  // namespace velmora
