// A widget that takes any size that it is given and cuts off what of its child does not fit.
#pragma once

#include <gtkmm/widget.h>

namespace velmora {

/// Lets a widget of our own part with its children when it goes. A managed widget's destructor comes
/// too late for that: the toolkit's part of it is gone by then.
void PartWithChildren(Gtk::Widget& parent);

class Clip : public Gtk::Widget {
public:
    /// Holds one child. `keepsHeight`: the height is the child's own, and only the width is free.
    explicit Clip(Gtk::Widget& child, bool keepsHeight = false);

protected:
    Gtk::SizeRequestMode get_request_mode_vfunc() const override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural, int& minimumBaseline,
                       int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

    Gtk::Widget& child_;

private:
    const bool keepsHeight_;
};

}  // namespace velmora
