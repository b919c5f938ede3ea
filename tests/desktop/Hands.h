// Real keyboard and mouse on the windows of the program, dialogs included.
#pragma once

#include <gtkmm/label.h>
#include <gtkmm/window.h>

#include <functional>
#include <string>

namespace velmora::test {

/// The widget of that name, the root itself or inside it; null if there is none.
Gtk::Widget* Find(Gtk::Widget& root, const std::string& name);
/// The first widget of a kind, the root itself or inside it; null if there is none.
template <class Kind>
Kind* FindKind(Gtk::Widget& root)
{
    if (auto* found = dynamic_cast<Kind*>(&root)) return found;
    for (Gtk::Widget* child = root.get_first_child(); child; child = child->get_next_sibling()) {
        if (auto* found = FindKind<Kind>(*child)) return found;
    }
    return nullptr;
}
/// The widget of that name, the root itself or inside it. Throws std::runtime_error if there is none.
Gtk::Widget& FindIn(Gtk::Widget& root, const std::string& name);
/// The window with that title that is on the screen; null if there is none.
Gtk::Window* OpenWindow(const std::string& title);
/// Calls `look` for every label in sight inside `root`.
void EachLabel(Gtk::Widget& root, const std::function<void(Gtk::Label&)>& look);

/// Runs a command of the screen's keyboard and mouse.
void Robot(const std::string& command);
/// Gives a window the keyboard.
void FocusOn(Gtk::Window& window);
/// Where the inside of a window stands on the screen, as "x,y" in pixels.
std::string PlaceOnScreen(Gtk::Window& window);
/// Presses keys one after the other, as "Tab Tab Return", in a window.
void PressKeys(Gtk::Window& window, const std::string& keys);
/// Asks a window to close as a window manager does, and lets it handle that.
void PressCloseBox(Gtk::Window& window);
/// Clicks at a place in a widget, or in its middle.
void ClickAt(GtkWidget* widget, double x, double y);
void ClickOn(Gtk::Widget& widget);

}  // namespace velmora::test
