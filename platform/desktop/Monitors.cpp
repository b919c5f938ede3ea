#include "platform/desktop/Monitors.h"

#include <gdkmm/display.h>
#include <gtk/gtk.h>

// Its macros spoil other headers.
#ifdef GDK_WINDOWING_X11
#include <gdk/x11/gdkx.h>
#endif

namespace velmora {
namespace {

#ifdef GDK_WINDOWING_X11

// Newer versions of the toolkit call everything of X11 deprecated.
G_GNUC_BEGIN_IGNORE_DEPRECATIONS

GdkMonitor* PrimaryMonitor(GdkDisplay* display)
{
    return GDK_IS_X11_DISPLAY(display) ? gdk_x11_display_get_primary_monitor(display) : nullptr;
}

G_GNUC_END_IGNORE_DEPRECATIONS

#else

GdkMonitor* PrimaryMonitor(GdkDisplay*) { return nullptr; }

#endif

}  // namespace

Glib::RefPtr<Gdk::Monitor> MonitorOf(Gtk::Window* window)
{
    const auto display = Gdk::Display::get_default();
    for (; window; window = window->get_transient_for()) {
        if (!window->get_mapped()) continue;
        if (auto monitor = display->get_monitor_at_surface(window->get_surface())) return monitor;
    }
    if (GdkMonitor* const primary = PrimaryMonitor(display->gobj())) return Glib::wrap(primary, true);
    return std::dynamic_pointer_cast<Gdk::Monitor>(display->get_monitors()->get_object(0));
}

}  // namespace velmora
