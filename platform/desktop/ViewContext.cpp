#include "platform/desktop/ViewContext.h"

#include <algorithm>
#include <iterator>

#include <glibmm/main.h>
#include <gtkmm/entry.h>
#include <gtkmm/root.h>

namespace velmora {
namespace {

void GrabFocus(Gtk::Widget& widget)
{
    auto* entry = dynamic_cast<Gtk::Entry*>(&widget);
    if (!entry) {
        widget.grab_focus();
        return;
    }
    // The place of the cursor is the user's: a layout pass must not select the text under it.
    if (!HoldsFocus(*entry)) entry->grab_focus_without_selecting();
}

}  // namespace

bool HoldsFocus(Gtk::Widget& widget)
{
    Gtk::Root* root = widget.get_root();
    Gtk::Widget* focus = root ? root->get_focus() : nullptr;
    return focus && (focus == &widget || focus->is_ancestor(widget));
}

bool FocusStop::HoldsFocus() const
{
    Gtk::Root* root = place->get_root();
    return velmora::HoldsFocus(*widget) || (root && root->get_focus() == place);
}

bool FocusStop::Enter(Gtk::DirectionType direction) const
{
    if (!widget->get_mapped() || !widget->is_sensitive()) return false;
    return enter ? enter(direction) : widget->child_focus(direction);
}

void ViewContext::MoveFocus(Gtk::Widget& widget)
{
    later_.disconnect();
    if (!allocating) {
        GrabFocus(widget);
        return;
    }
    const auto grab = [&widget] {
        GrabFocus(widget);
        return false;
    };
    later_ = Glib::signal_idle().connect(grab, Glib::PRIORITY_HIGH_IDLE);
}

std::vector<FocusStop> ViewContext::TabOrder() const
{
    std::vector<FocusStop> order;
    std::copy_if(stops.begin(), stops.end(), std::back_inserter(order),
                 [](const FocusStop& stop) { return stop.control->TabIndex() >= 0; });
    std::stable_sort(order.begin(), order.end(), [](const FocusStop& a, const FocusStop& b) {
        return a.control->TabIndex() < b.control->TabIndex();
    });
    return order;
}

Gtk::Widget* ViewContext::Find(const Control& control) const
{
    for (const FocusStop& stop : stops) {
        if (stop.control == &control) return stop.widget;
    }
    return nullptr;
}

}  // namespace velmora
