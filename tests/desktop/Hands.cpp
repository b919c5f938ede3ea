#include "tests/desktop/Hands.h"

#include <glibmm/spawn.h>
#include <gtest/gtest.h>

#include <stdexcept>

// Its macros spoil other headers.
#include <gdk/x11/gdkx.h>

namespace velmora::test {

namespace {

std::string XidOf(gpointer window)
{
    return std::to_string(gdk_x11_surface_get_xid(gtk_native_get_surface(GTK_NATIVE(window))));
}

}  // namespace

void Each(Gtk::Widget& root, const std::function<void(Gtk::Widget&)>& look)
{
    look(root);
    for (Gtk::Widget* child = root.get_first_child(); child; child = child->get_next_sibling()) Each(*child, look);
}

void EachLabel(Gtk::Widget& root, const std::function<void(Gtk::Label&)>& look)
{
    Each(root, [&](Gtk::Widget& widget) {
        auto* label = dynamic_cast<Gtk::Label*>(&widget);
        if (label && label->get_mapped()) look(*label);
    });
}

Gtk::Widget* Find(Gtk::Widget& root, const std::string& name)
{
    Gtk::Widget* found = nullptr;
    Each(root, [&](Gtk::Widget& widget) {
        if (!found && widget.get_name().raw() == name) found = &widget;
    });
    return found;
}

Gtk::Widget& FindIn(Gtk::Widget& root, const std::string& name)
{
    Gtk::Widget* found = Find(root, name);
    if (!found) throw std::runtime_error("no widget " + name);
    return *found;
}

Gtk::Window* OpenWindow(const std::string& title)
{
    for (Gtk::Window* window : Gtk::Window::list_toplevels()) {
        if (!window->get_mapped()) continue;
        if (window->get_title().raw() == title || window->get_name().raw() == title) return window;
    }
    return nullptr;
}

std::string Robot(const std::string& command)
{
    int status = 0;
    std::string said;
    Glib::spawn_command_line_sync("xdotool " + command, &said, nullptr, &status);
    EXPECT_EQ(status, 0) << command;
    return said;
}

void FocusOn(Gtk::Window& window) { Robot("windowfocus --sync " + XidOf(window.gobj())); }

std::string PlaceOnScreen(Gtk::Window& window)
{
    const std::string told = Robot("getwindowgeometry " + XidOf(window.gobj()));
    const std::size_t place = told.find("Position: ") + 10;
    return told.substr(place, told.find(' ', place) - place);
}

void PressKeys(Gtk::Window& window, const std::string& keys)
{
    FocusOn(window);
    Robot("key --delay 20 " + keys);
}

void ClickAt(GtkWidget* widget, double x, double y)
{
    GtkWidget* window = GTK_WIDGET(gtk_widget_get_root(widget));
    const graphene_point_t inWidget{static_cast<float>(x), static_cast<float>(y)};
    graphene_point_t place;
    ASSERT_TRUE(gtk_widget_compute_point(widget, window, &inWidget, &place));
    double shadowX = 0;
    double shadowY = 0;
    gtk_native_get_surface_transform(GTK_NATIVE(window), &shadowX, &shadowY);
    Robot("mousemove --window " + XidOf(window) + " " + std::to_string(static_cast<int>(place.x + shadowX)) + " " +
          std::to_string(static_cast<int>(place.y + shadowY)) + " click 1");
}

void ClickOn(Gtk::Widget& widget) { ClickAt(widget.gobj(), widget.get_width() / 2.0, widget.get_height() / 2.0); }

}  // namespace velmora::test
