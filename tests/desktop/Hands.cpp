#include "tests/desktop/Hands.h"

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

Gtk::Widget* Find(Gtk::Widget& root, const std::string& name)
{
    if (root.get_name().raw() == name) return &root;
    for (Gtk::Widget* child = root.get_first_child(); child; child = child->get_next_sibling()) {
        if (Gtk::Widget* found = Find(*child, name)) return found;
    }
    return nullptr;
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

void Robot(const std::string& command)
{
    int status = 0;
    const bool ran = g_spawn_command_line_sync(("xdotool " + command).c_str(), nullptr, nullptr, &status, nullptr);
    EXPECT_TRUE(ran && status == 0) << command;
}

void FocusOn(Gtk::Window& window) { Robot("windowfocus --sync " + XidOf(window.gobj())); }

std::string PlaceOnScreen(Gtk::Window& window)
{
    Display* display = gdk_x11_display_get_xdisplay(gtk_widget_get_display(GTK_WIDGET(window.gobj())));
    int x = 0, y = 0;
    ::Window child = 0;
    XTranslateCoordinates(display, std::stoul(XidOf(window.gobj())), DefaultRootWindow(display), 0, 0, &x, &y, &child);
    return std::to_string(x) + "," + std::to_string(y);
}

void PressKeys(Gtk::Window& window, const std::string& keys)
{
    FocusOn(window);
    Robot("key --delay 20 " + keys);
}

void PressCloseBox(Gtk::Window& window)
{
    Display* display = gdk_x11_display_get_xdisplay(gtk_widget_get_display(GTK_WIDGET(window.gobj())));
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = std::stoul(XidOf(window.gobj()));
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, event.xclient.window, False, NoEventMask, &event);
    XSync(display, False);
    while (g_main_context_iteration(nullptr, FALSE)) {
    }
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
