// What a screen reader is told about a widget.
#pragma once

#include <glibmm/value.h>
#include <gtkmm/accessible.h>
#include <gtkmm/widget.h>

namespace velmora {

/// Sets the words that stand for a widget.
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

}  // namespace velmora
