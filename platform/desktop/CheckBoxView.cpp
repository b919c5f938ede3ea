#include "platform/desktop/CheckBoxView.h"

#include <gtk/gtk.h>

#include "platform/desktop/Accessible.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

// A check box narrower than this has room for its box only; its words are then left to a label.
constexpr int kNarrowestWithCaption = 40;

CheckBoxView::CheckBoxView(CheckBox& control) : control_(control)
{
    set_valign(Gtk::Align::CENTER);
    set_active(control.Value() == 1);
    ShowCaption();
    signal_toggled().connect([this] { control_.Value = get_active() ? 1 : 0; });
    caption_ = control.Caption.Changed.Connect([this] { ShowCaption(); });
    width_ = control.Width.Changed.Connect([this] { ShowCaption(); });
    value_ = control.Value.Changed.Connect([this] { set_active(control_.Value() == 1); });
}

void CheckBoxView::ShowCaption()
{
    const Glib::ustring caption = DisplayText(control_.Caption());
    const bool hasRoom = PlaceOf(control_).get_width() >= kNarrowestWithCaption;
    // An empty caption would still keep its distance from the box; only none at all takes no room.
    gtk_check_button_set_label(gobj(), hasRoom ? caption.c_str() : nullptr);
    SetAccessibleName(*this, caption);
}

}  // namespace velmora
