// The place of a window on the screen.
#pragma once

#include <gtkmm/window.h>

#include "platform/controls/Controls.h"

namespace velmora {

/// Keeps a window of the screen at Left and Top of the window that it shows, counted from the corner of the monitor
/// that shows the window it belongs to, or of the primary one. Under X11 alone: elsewhere a window stands where the
/// desktop puts it.
class WindowPlace {
public:
    /// Made before the surface is first shown; both must outlive this.
    WindowPlace(Gtk::Window& surface, velmora::Window& window);

    /// Has the surface come up no higher than the screen has room for it, title bar included: the toolkit counts
    /// without that one. Before it is first shown.
    void FitHeight();

private:
    void Move();

    Gtk::Window& surface_;
    velmora::Window& window_;
    Subscription left_, top_;
};

}  // namespace velmora
