#include "platform/desktop/ControlSlot.h"

#include <gtkmm/root.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/DisplayText.h"

namespace velmora {

ControlSlot::ControlSlot(Control& control, Gtk::Widget& view, Gtk::Widget& widget, ViewContext& context)
    : Glib::ObjectBase("velmora_ControlSlot"), Clip(view), control_(control), widget_(widget), context_(context)
{
    widget.set_name(control.Name);
    if (!control.AccessibleName().empty()) ShowAccessibleName();
    set_visible(control.Visible());
    view.set_sensitive(control.Enabled());

    for (velmora::Property<Twips>* edge : {&control.Left, &control.Top, &control.Width, &control.Height}) {
        subscriptions_.push_back(edge->Changed.Connect([this] { Replace(); }));
    }
    subscriptions_.push_back(control.Page.Changed.Connect([this] { Replace(); }));
    subscriptions_.push_back(control.AccessibleName.Changed.Connect([this] { ShowAccessibleName(); }));
    subscriptions_.push_back(control.Visible.Changed.Connect([this] { set_visible(control_.Visible()); }));
    subscriptions_.push_back(control.Enabled.Changed.Connect([this] { Enable(control_.Enabled()); }));
    subscriptions_.push_back(control.FocusRequested.Connect([this, &widget] { context_.MoveFocus(widget); }));
}

void ControlSlot::ShowAccessibleName() { SetAccessibleName(widget_, DisplayText(control_.AccessibleName())); }

void ControlSlot::Enable(bool isEnabled)
{
    // The toolkit takes the focus away from what is disabled and gives it to nobody. Its place keeps it:
    // the Tab key goes on from there, no key does anything else, and once enabled the control has it back.
    Gtk::Root* root = get_root();
    if (!isEnabled && HoldsFocus(widget_)) root->set_focus(*this);
    child_.set_sensitive(isEnabled);
    if (isEnabled && root && root->get_focus() == this) widget_.grab_focus();
}

void ControlSlot::Replace()
{
    // While sizes are being given out the new place is read in the same pass.
    if (Gtk::Widget* area = get_parent(); area && !context_.allocating) area->queue_allocate();
}

}  // namespace velmora
