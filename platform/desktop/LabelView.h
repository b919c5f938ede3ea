// A label on the screen.
#pragma once

#include <gtkmm/label.h>

#include "platform/controls/Controls.h"

namespace velmora {

class LabelView : public Gtk::Label {
public:
    explicit LabelView(velmora::Label& control);

private:
    void ShowCaption();
    void Fit();

    velmora::Label& control_;
    Subscription caption_, width_, height_;
};

}  // namespace velmora
