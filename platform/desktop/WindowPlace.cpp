#include "platform/desktop/WindowPlace.h"

#include <gdk/gdk.h>

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

void MoveSurface(GdkSurface* surface, int left, int top)
{
    if (!GDK_IS_X11_SURFACE(surface)) return;
    GdkRectangle monitor{};
    if (gpointer first = g_list_model_get_item(gdk_display_get_monitors(gdk_surface_get_display(surface)), 0)) {
        gdk_monitor_get_geometry(GDK_MONITOR(first), &monitor);
        g_object_unref(first);
    }
    const int scale = gdk_surface_get_scale_factor(surface);
    MoveOnX11(surface, (monitor.x + left) * scale, (monitor.y + top) * scale);
}

G_GNUC_END_IGNORE_DEPRECATIONS

#else

void MoveSurface(GdkSurface*, int, int) {}

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

void WindowPlace::Move()
{
    GdkSurface* const surface = gtk_native_get_surface(GTK_NATIVE(surface_.gobj()));
    if (surface) MoveSurface(surface, Edge(window_.Left()), Edge(window_.Top()));
}

}  // namespace velmora
