// Captions that are to be read in full in a place of a fixed size.
#pragma once

#include <gtkmm/label.h>

namespace velmora {

/// Sets the type of a label so that its text fits the place (in pixels): as it is, condensed, in
/// several lines, and smaller in the end. What cannot be read at any size is ellipsized. The label
/// must be on a window, since its font comes from there.
void FitCaption(Gtk::Label& label, int width, int height);

}  // namespace velmora
