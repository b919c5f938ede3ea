// The keyboard's way to the column titles of a list: Up from the first row leads to them, Left and Right
// go along them, Enter or Space presses one, Down leads back.
#pragma once

#include <functional>
#include <vector>

#include <gtkmm/columnview.h>

namespace velmora {

class HeaderKeys {
public:
    /// `isAtTop` tells whether the focus is in no row but the first; `press` is called with the number of
    /// a column, counted from 1. The view must outlive this.
    HeaderKeys(Gtk::ColumnView& view, std::function<bool()> isAtTop, std::function<void(int column)> press);

    /// The title of the next column. Titles that are gone are forgotten with Clear.
    void Add(Gtk::Widget& title);
    void Clear() { titles_.clear(); }

private:
    bool OnListKey(guint key, Gdk::ModifierType state);
    bool OnTitleKey(std::size_t title, guint key);
    bool FocusTitle(std::size_t title);
    /// Scrolls the list until the title is to be seen.
    void Reveal(Gtk::Widget& title);

    Gtk::ColumnView& view_;
    std::function<bool()> isAtTop_;
    std::function<void(int)> press_;
    std::vector<Gtk::Widget*> titles_;
};

}  // namespace velmora
