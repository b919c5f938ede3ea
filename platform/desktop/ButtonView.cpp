#include "platform/desktop/ButtonView.h"

#include "platform/desktop/Accessible.h"
#include "platform/desktop/Caption.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

// Margin, border and padding of a button at both sides together; the style sheet sets them.
constexpr int kInsetAcross = 10;
constexpr int kInsetDown = 4;

ButtonView::ButtonView(CommandButton& control) : control_(control)
{
    add_css_class("command");
    label_.set_justify(Gtk::Justification::CENTER);
    set_child(label_);
    ShowCaption();
    signal_clicked().connect([this] { control_.Click.Raise(); });
    signal_map().connect([this] { Fit(); });
    caption_ = control.Caption.Changed.Connect([this] { ShowCaption(); });
    width_ = control.Width.Changed.Connect([this] { Fit(); });
    height_ = control.Height.Changed.Connect([this] { Fit(); });
}

void ButtonView::ShowCaption()
{
    const Glib::ustring caption = DisplayText(control_.Caption());
    label_.set_text(caption);
    SetAccessibleName(*this, caption);
    Fit();
}

void ButtonView::Fit()
{
    const Gdk::Rectangle place = PlaceOf(control_);
    FitCaption(label_, place.get_width() - kInsetAcross, place.get_height() - kInsetDown);
}

}  // namespace velmora
