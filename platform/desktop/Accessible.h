// What a screen reader is told about a widget.
#pragma once

#include <glibmm/value.h>
#include <gtk/gtk.h>
#include <gtkmm/accessible.h>
#include <gtkmm/scrolledwindow.h>
#include <gtkmm/widget.h>

namespace velmora {

/// Sets the words that stand for a widget. Where nothing is set the toolkit gives the name of the widget's type, so
/// what has no words needs empty ones.
inline void SetAccessibleName(Gtk::Widget& widget, const Glib::ustring& name)
{
    Glib::Value<Glib::ustring> value;
    value.init(Glib::Value<Glib::ustring>::value_type());
    value.set(name);
    widget.update_property(Gtk::Accessible::Property::LABEL, value);
}

/// Tells whether a widget is the one that is chosen among its like.
inline void SetAccessibleSelected(Gtk::Widget& widget, bool isSelected)
{
    // The state can be undefined as well, so the toolkit takes a number for it.
    Glib::Value<int> value;
    value.init(Glib::Value<int>::value_type());
    value.set(isSelected ? 1 : 0);
    widget.update_state(Gtk::Accessible::State::SELECTED, value);
}

/// Sets the role of a widget; only before it is first shown.
inline void SetAccessibleRole(Gtk::Widget& widget, Gtk::Accessible::Role role)
{
    widget.property_accessible_role() = role;
}

/// Keeps a widget and all that is in it from screen readers: it is for the eyes or the mouse alone.
inline void HideFromReaders(Gtk::Widget& widget) { SetAccessibleRole(widget, Gtk::Accessible::Role::PRESENTATION); }

/// A list is scrolled by the keys that go through its rows, a text by those that read it.
inline void HideScrollBars(Gtk::ScrolledWindow& scroller)
{
    for (GtkWidget* bar :
         {gtk_scrolled_window_get_hscrollbar(scroller.gobj()), gtk_scrolled_window_get_vscrollbar(scroller.gobj())}) {
        g_object_set(bar, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr);
    }
}

/// Says a text that has come up outside the focus. Older toolkits cannot; they tell that its widget has changed.
inline void Announce([[maybe_unused]] Gtk::Widget& widget, [[maybe_unused]] const Glib::ustring& text)
{
#if GTK_CHECK_VERSION(4, 14, 0)
    if (text.empty()) return;
    gtk_accessible_announce(GTK_ACCESSIBLE(widget.gobj()), text.c_str(), GTK_ACCESSIBLE_ANNOUNCEMENT_PRIORITY_MEDIUM);
#endif
}

}  // namespace velmora
