#include "platform/desktop/ControlArea.h"

#include "platform/desktop/Pixels.h"

namespace velmora {

void PutAt(Gtk::Widget& widget, const Gdk::Rectangle& place)
{
    const bool isShown = widget.get_visible() && place.get_width() > 0 && place.get_height() > 0;
    widget.set_child_visible(isShown);
    if (!isShown) return;
    int minimum = 0, natural = 0, baseline = -1;
    widget.measure(Gtk::Orientation::HORIZONTAL, -1, minimum, natural, baseline, baseline);
    widget.measure(Gtk::Orientation::VERTICAL, place.get_width(), minimum, natural, baseline, baseline);
    widget.size_allocate(place, -1);
}

ControlArea::ControlArea(ViewContext& context) : Glib::ObjectBase("velmora_ControlArea"), context_(context) {}

ControlSlot& ControlArea::Add(Control& control, Gtk::Widget& view, Gtk::Widget& widget)
{
    auto* slot = Gtk::make_managed<ControlSlot>(control, view, widget, context_);
    slot->set_parent(*this);
    slots_.push_back(slot);
    return *slot;
}

Gdk::Rectangle ControlArea::Place(const Control& control) const { return PlaceOf(control); }

void ControlArea::size_allocate_vfunc(int, int, int)
{
    for (ControlSlot* slot : slots_) PutAt(*slot, Place(slot->ControlShown()));
}

}  // namespace velmora
