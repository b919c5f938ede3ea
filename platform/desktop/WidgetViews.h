// The views of the controls that are one widget each. A view is managed: what it is put into owns it.
#pragma once

#include <gtkmm/button.h>
#include <gtkmm/widget.h>

#include "platform/controls/Controls.h"

namespace velmora {

Gtk::Button& MakeView(CommandButton& control);
Gtk::Widget& MakeView(CheckBox& control);
Gtk::Widget& MakeView(TextBox& control);
Gtk::Widget& MakeView(Label& control);
/// Shows a picture packed into the program; stays empty if the desktop cannot read its format.
Gtk::Widget& MakeView(Picture& control);

}  // namespace velmora
