// The monitors of the desktop.
#pragma once

#include <gdkmm/monitor.h>
#include <gtkmm/window.h>

namespace velmora {

/// The monitor on which a window stands; for a window that is not on the screen yet that of the window it belongs to,
/// and for one that belongs to none the desktop's primary monitor. Null if there is no monitor at all.
Glib::RefPtr<Gdk::Monitor> MonitorOf(Gtk::Window* window);

}  // namespace velmora
