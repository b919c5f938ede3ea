// The inside of a container: puts every control exactly at its place and cuts off what lies outside.
#pragma once

#include <vector>

#include "platform/desktop/ControlSlot.h"

namespace velmora {

class ControlArea : public FreeWidget {
public:
    explicit ControlArea(ViewContext& context);

    /// Adds the widget of a control, in front of those that are there, and gives what holds its place.
    /// `view` is what holds the widget, or the same. Both are managed.
    ControlSlot& Add(Control& control, Gtk::Widget& view, Gtk::Widget& widget);

protected:
    /// Where a control is to be; empty for a control that is not shown now.
    virtual Gdk::Rectangle Place(const Control& control) const;

    void size_allocate_vfunc(int width, int height, int baseline) override;

    ViewContext& context_;

private:
    std::vector<ControlSlot*> slots_;
};

/// Gives a widget its place, or takes it off the screen if that is empty.
void PutAt(Gtk::Widget& widget, const Gdk::Rectangle& place);

}  // namespace velmora
