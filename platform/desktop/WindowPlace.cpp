#include "platform/desktop/WindowPlace.h"

#include <gtk/gtk.h>

#include <algorithm>

#include "platform/desktop/Monitors.h"
#include "platform/desktop/Pixels.h"

// Its macros spoil other headers.
#ifdef GDK_WINDOWING_X11
#include <gdk/x11/gdkx.h>
#endif

namespace velmora {
namespace {

#ifdef GDK_WINDOWING_X11

// Newer versions of the toolkit call everything of X11 deprecated.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

/// Moves the outer corner of a window, frame included.
void MoveOnX11(GdkSurface* surface, int left, int top)
{
    Display* const display = gdk_x11_display_get_xdisplay(gdk_surface_get_display(surface));
    const ::Window window = gdk_x11_surface_get_xid(surface);
    // Without the mark of a user's wish a window manager keeps to its own mind at the first showing.
    XSizeHints hints{};
    long unused = 0;
    XGetWMNormalHints(display, window, &hints, &unused);
    hints.flags |= USPosition | PPosition | PWinGravity;
    hints.x = left;
    hints.y = top;
    hints.win_gravity = NorthWestGravity;
    XSetWMNormalHints(display, window, &hints);
    XMoveWindow(display, window, left, top);
}

/// The place of a monitor without what the desktop keeps for its panels; empty where windows place themselves not.
GdkRectangle WorkArea(GdkMonitor* monitor)
{
    GdkRectangle area{};
    if (GDK_IS_X11_MONITOR(monitor)) gdk_x11_monitor_get_workarea(monitor, &area);
    return area;
}

void MoveSurface(GdkSurface* surface, GdkMonitor* monitor, int left, int top)
{
    if (!GDK_IS_X11_SURFACE(surface)) return;
    GdkRectangle whole{};
    gdk_monitor_get_geometry(monitor, &whole);
    const GdkRectangle free = WorkArea(monitor);
    const int scale = gdk_surface_get_scale_factor(surface);
    // On a screen smaller than the window the middle would take title bar and menus off it.
    const int x = std::max(whole.x + left, free.x);
    const int y = std::max(whole.y + top, free.y);
    MoveOnX11(surface, x * scale, y * scale);
}

G_GNUC_END_IGNORE_DEPRECATIONS

#else

GdkRectangle WorkArea(GdkMonitor*) { return {}; }

void MoveSurface(GdkSurface*, GdkMonitor*, int, int) {}

#endif

}  // namespace

WindowPlace::WindowPlace(Gtk::Window& surface, velmora::Window& window) : surface_(surface), window_(window)
{
    // Before it is on the screen, so that it does not jump; and after, for those who place it all the same.
    surface.signal_realize().connect([this] { Move(); });
    surface.signal_map().connect([this] { Move(); });
    left_ = window.Left.Changed.Connect([this] { Move(); });
    top_ = window.Top.Changed.Connect([this] { Move(); });
}

void WindowPlace::FitHeight()
{
    constexpr int kTitleBar = 30;
    const auto monitor = MonitorOf(&surface_);
    const int highest = monitor ? WorkArea(monitor->gobj()).height - kTitleBar : 0;
    int minimum = 0, natural = 0, baseline = -1;
    surface_.measure(Gtk::Orientation::VERTICAL, -1, minimum, natural, baseline, baseline);
    if (highest > 0 && natural > highest) surface_.set_default_size(-1, highest);
}

void WindowPlace::Move()
{
    GdkSurface* const surface = gtk_native_get_surface(GTK_NATIVE(surface_.gobj()));
    const auto monitor = MonitorOf(surface_.get_transient_for());
    if (surface && monitor) MoveSurface(surface, monitor->gobj(), Edge(window_.Left()), Edge(window_.Top()));
}

}  // namespace velmora
