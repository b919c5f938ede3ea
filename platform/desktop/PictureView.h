// A picture on the screen.
#pragma once

#include <gtkmm/picture.h>

#include "platform/controls/Controls.h"

namespace velmora {

/// Shows a picture packed into the program; stays empty if the desktop cannot read its format.
class PictureView : public Gtk::Picture {
public:
    explicit PictureView(velmora::Picture& control);
};

}  // namespace velmora
