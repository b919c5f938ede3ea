#include "tests/desktop/Hands.h"

#include <gtest/gtest.h>
#include <gtkmm/root.h>

#include <stdexcept>

// Its macros spoil other headers.
#include <gdk/x11/gdkx.h>

namespace velmora::test {

namespace {

void Robot(const std::string& arguments)
{
    const std::string command = "xdotool " + arguments;
    int status = 0;
    const bool ran = g_spawn_command_line_sync(command.c_str(), nullptr, nullptr, &status, nullptr);
    EXPECT_TRUE(ran && status == 0) << command;
}

std::string XidOf(Gtk::Widget& window)
{
    return std::to_string(gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window.gobj()))));
}

Gtk::Widget* Find(Gtk::Widget& root, const std::string& name)
{
    if (root.get_name().raw() == name) return &root;
    for (Gtk::Widget* child = root.get_first_child(); child; child = child->get_next_sibling()) {
        if (Gtk::Widget* found = Find(*child, name)) return found;
    }
    return nullptr;
}

}  // namespace

Gtk::Widget& FindIn(Gtk::Widget& root, const std::string& name)
{
    Gtk::Widget* found = Find(root, name);
    if (!found) throw std::runtime_error("no widget " + name);
    return *found;
}

Gtk::Window* OpenWindow(const std::string& title)
{
    for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
        if (window->get_title().raw() == title && window->get_mapped()) return window;
    }
    return nullptr;
}

void EachLabel(Gtk::Widget& root, const std::function<void(Gtk::Label&)>& look)
{
    if (!root.get_mapped()) return;
    if (auto* label = dynamic_cast<Gtk::Label*>(&root)) look(*label);
    for (Gtk::Widget* child = root.get_first_child(); child; child = child->get_next_sibling()) {
        EachLabel(*child, look);
    }
}

void PressKeys(Gtk::Window& window, const std::string& keys)
{
    Robot("windowfocus --sync " + XidOf(window) + " key --delay 20 " + keys);
}

void ClickOn(Gtk::Widget& widget)
{
    auto& window = dynamic_cast<Gtk::Widget&>(*widget.get_root());
    double x = 0, y = 0, shadowX = 0, shadowY = 0;
    ASSERT_TRUE(widget.translate_coordinates(window, widget.get_width() / 2.0, widget.get_height() / 2.0, x, y));
    gtk_native_get_surface_transform(GTK_NATIVE(window.gobj()), &shadowX, &shadowY);
    Robot("mousemove --window " + XidOf(window) + " " + std::to_string(static_cast<int>(x + shadowX)) + " " +
          std::to_string(static_cast<int>(y + shadowY)) + " click 1");
}

}  // namespace velmora::test
