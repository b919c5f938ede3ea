#include "platform/desktop/ButtonView.h"

#include "platform/desktop/Accessible.h"
#include "platform/desktop/ButtonGap.h"
#include "platform/desktop/Caption.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

// Border and padding of a button at both sides together, and its margin above and below; the style
// sheet sets them.
constexpr int kInsetAcross = 4;
constexpr int kInsetDown = 4;

ButtonView::ButtonView(CommandButton& control) : control_(control)
{
    add_css_class("command");
    const ButtonMargins margins = MarginsOf(control);
    set_margin_start(margins.left);
    set_margin_end(margins.right);
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
    const int margins = get_margin_start() + get_margin_end();
    FitCaption(label_, place.get_width() - margins - kInsetAcross, place.get_height() - kInsetDown);
}

}  // namespace velmora
