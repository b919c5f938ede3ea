#include "platform/desktop/Clip.h"

#include <algorithm>

#include "platform/desktop/Accessible.h"

namespace velmora {

FreeWidget::FreeWidget()
{
    signal_destroy().connect([this] {
        while (Gtk::Widget* child = get_first_child()) child->unparent();
    });
    set_overflow(Gtk::Overflow::HIDDEN);
    SetAccessibleRole(*this, Gtk::Accessible::Role::GENERIC);
}

Gtk::SizeRequestMode FreeWidget::get_request_mode_vfunc() const { return Gtk::SizeRequestMode::CONSTANT_SIZE; }

void FreeWidget::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural, int& minimumBaseline,
                               int& naturalBaseline) const
{
    minimum = natural = 0;
    minimumBaseline = naturalBaseline = -1;
}

Clip::Clip(Gtk::Widget& child, bool keepsHeight)
    : Glib::ObjectBase("velmora_Clip"), child_(child), keepsHeight_(keepsHeight)
{
    child_.set_parent(*this);
}

void Clip::measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural, int& minimumBaseline,
                         int& naturalBaseline) const
{
    FreeWidget::measure_vfunc(orientation, forSize, minimum, natural, minimumBaseline, naturalBaseline);
    if (!keepsHeight_ || orientation != Gtk::Orientation::VERTICAL) return;
    int baseline = -1;
    child_.measure(orientation, -1, minimum, natural, baseline, baseline);
}

void Clip::size_allocate_vfunc(int width, int height, int)
{
    // A widget that gets less than its minimum complains and draws beyond its place.
    int minimum = 0, natural = 0, baseline = -1;
    child_.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, baseline, baseline);
    const int childWidth = std::max(width, minimum);
    child_.measure(Gtk::Orientation::VERTICAL, childWidth, minimum, natural, baseline, baseline);
    child_.size_allocate(Gtk::Allocation(0, 0, childWidth, std::max(height, minimum)), -1);
}

}  // namespace velmora
