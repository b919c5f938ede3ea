// Real keyboard and mouse on the windows of the program, dialogs included.
#pragma once

#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>

namespace velmora::test {

/// The widget of that name, the root itself or inside it. Throws std::runtime_error if there is none.
Gtk::Widget& FindIn(Gtk::Widget& root, const std::string& name);
/// The window with that title that is on the screen; null if there is none.
Gtk::Window* OpenWindow(const std::string& title);
/// Calls `look` for every label in sight inside `root`.
void EachLabel(Gtk::Widget& root, const std::function<void(Gtk::Label&)>& look);

/// Presses keys one after the other, as "Tab Tab Return", in a window.
void PressKeys(Gtk::Window& window, const std::string& keys);
/// Clicks in the middle of a widget.
void ClickOn(Gtk::Widget& widget);

}  // namespace velmora::test
