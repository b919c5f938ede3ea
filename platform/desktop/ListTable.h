// A list with columns on the screen.
#pragma once

#include <gtkmm/columnview.h>
#include <gtkmm/listitem.h>
#include <gtkmm/scrolledwindow.h>

#include "platform/controls/ListView.h"
#include "platform/desktop/HeaderKeys.h"

namespace velmora {

/// Makes widgets only for the rows in sight.
class ListTable : public Gtk::ScrolledWindow {
public:
    explicit ListTable(velmora::ListView& list);

    Gtk::ColumnView& Columns() { return columns_; }
    /// Gives the focus to a row or, where there is none, to the list itself.
    bool TakeFocus(Gtk::DirectionType direction);

private:
    void RebuildColumns();
    void AddColumn(const ColumnHeader& header);
    /// The title of the column that was added last; null if the toolkit keeps none where it is looked for.
    Gtk::Widget* NewestTitle();
    void FitTitle(Gtk::Widget& title, int width);
    /// Raises the list's ColumnClick for a click on the title; GTK notifies sorters only.
    void WatchClicks(Gtk::Widget& title, int column);

    void PressTitle(int column);
    /// True unless the focus is in a row with another one above it.
    bool IsAtTop();

    velmora::ListView& list_;
    Gtk::ColumnView& columns_;
    HeaderKeys keys_;
    Subscription columnsChanged_;
};

}  // namespace velmora
