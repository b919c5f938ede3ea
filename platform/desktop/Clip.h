// Widgets that take any size that they are given.
#pragma once

#include <gtkmm/widget.h>

namespace velmora {

/// Asks for no size of its own, cuts off what lies outside, and parts with its children when it goes: a
/// managed widget's destructor comes too late for that, since the toolkit's part of it is gone by then.
class FreeWidget : public Gtk::Widget {
protected:
    FreeWidget();

    Gtk::SizeRequestMode get_request_mode_vfunc() const override;
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural, int& minimumBaseline,
                       int& naturalBaseline) const override;
};

/// Holds one child.
class Clip : public FreeWidget {
public:
    /// `keepsHeight`: the height is the child's own, and only the width is free.
    explicit Clip(Gtk::Widget& child, bool keepsHeight = false);

protected:
    void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural, int& minimumBaseline,
                       int& naturalBaseline) const override;
    void size_allocate_vfunc(int width, int height, int baseline) override;

    Gtk::Widget& child_;

private:
    const bool keepsHeight_;
};

}  // namespace velmora
