// The inside of a window: its controls, its size, and the keyboard's way through it.
#pragma once

#include <functional>

#include <glibmm/extraclassinit.h>

#include "platform/desktop/ControlArea.h"

namespace velmora {

/// Puts the focus chain into the widget class: gtkmm has no virtual function for it.
class FocusChain : public Glib::ExtraClassInit {
protected:
    FocusChain();
};

class ClientArea : public FocusChain, public ControlArea {
public:
    /// Builds the views of all controls of `window`. The area asks for the window's inner size;
    /// with `isFixed` it takes no other.
    ClientArea(Window& window, ViewContext& context, bool isFixed);

    /// Moves the focus to the next control in tab order, or to the one before. False at the end.
    bool MoveFocus(Gtk::DirectionType direction);

    /// Called with the new size in pixels whenever it changed, before the controls are placed.
    std::function<void(int width, int height)> Resized;

protected:
    Gdk::Rectangle Place(const Control& control) const override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural, int& minimumBaseline,
                       int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

private:
    const int naturalWidth_;
    const int naturalHeight_;
    const bool isFixed_;
    const Control* statusBar_ = nullptr;  ///< Null in a window without one.
    int width_ = -1;
    int height_ = -1;
};

}  // namespace velmora
