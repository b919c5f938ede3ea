// A command button on the screen.
#pragma once

#include <gtkmm/button.h>
#include <gtkmm/label.h>

#include "platform/controls/Controls.h"

namespace velmora {

class ButtonView : public Gtk::Button {
public:
    explicit ButtonView(CommandButton& control);

private:
    void ShowCaption();
    void Fit();

    CommandButton& control_;
    Gtk::Label label_;
    Subscription caption_, width_, height_;
};

}  // namespace velmora
