// A check box on the screen.
#pragma once

#include <gtkmm/checkbutton.h>

#include "platform/controls/Controls.h"

namespace velmora {

class CheckBoxView : public Gtk::CheckButton {
public:
    explicit CheckBoxView(CheckBox& control);

private:
    void ShowCaption();

    CheckBox& control_;
    Subscription caption_, value_, width_;
};

}  // namespace velmora
