// Real keyboard and mouse on the windows of the program, dialogs included.
#pragma once

#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>

namespace velmora::test {

/// The widget of that name, the root itself or inside it; null if there is none. One that was given no name
/// has its type's.
Gtk::Widget* Find(Gtk::Widget& root, const std::string& name);
/// The same, but throws std::runtime_error if there is none.
Gtk::Widget& FindIn(Gtk::Widget& root, const std::string& name);
/// The same, but throws std::bad_cast if it is of another kind, too.
template <class Kind>
Kind& FindIn(Gtk::Widget& root, const std::string& name)
{
    return dynamic_cast<Kind&>(FindIn(root, name));
}
/// The window with that title, or of that name, that is on the screen; null if there is none.
Gtk::Window* OpenWindow(const std::string& title);
/// Calls `look` for every widget inside `root` and for itself, in sight or not.
void Each(Gtk::Widget& root, const std::function<void(Gtk::Widget&)>& look);
/// Calls `look` for every label in sight inside `root`.
void EachLabel(Gtk::Widget& root, const std::function<void(Gtk::Label&)>& look);

/// Runs a command of the screen's keyboard and mouse, and gives what it says.
std::string Robot(const std::string& command);
/// Gives a window the keyboard.
void FocusOn(Gtk::Window& window);
/// Where the inside of a window stands on the screen, as "x,y" in pixels.
std::string PlaceOnScreen(Gtk::Window& window);
/// Presses keys one after the other, as "Tab Tab Return", in a window.
void PressKeys(Gtk::Window& window, const std::string& keys);
/// Clicks at a place in a widget, or in its middle.
void ClickAt(GtkWidget* widget, double x, double y);
void ClickOn(Gtk::Widget& widget);

}  // namespace velmora::test
