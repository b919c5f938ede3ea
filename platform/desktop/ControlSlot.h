// The place of one control in its container: follows what all controls share, whatever their kind.
#pragma once

#include <vector>

#include "platform/controls/Controls.h"
#include "platform/desktop/Clip.h"
#include "platform/desktop/ViewContext.h"

namespace velmora {

class ControlSlot : public Clip {
public:
    /// `widget` is the control's own; `view` holds it or is the same.
    ControlSlot(Control& control, Gtk::Widget& view, Gtk::Widget& widget, ViewContext& context);

    Control& ControlShown() const { return control_; }

private:
    void Replace();
    void Enable(bool isEnabled);
    void ShowAccessibleName();

    Control& control_;
    Gtk::Widget& widget_;
    ViewContext& context_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace velmora
