#include "platform/desktop/LabelView.h"

#include "platform/desktop/Caption.h"
#include "platform/desktop/DisplayText.h"
#include "platform/desktop/Pixels.h"

namespace velmora {

LabelView::LabelView(velmora::Label& control) : control_(control)
{
    set_xalign(0);
    set_yalign(0);
    ShowCaption();
    signal_map().connect([this] { Fit(); });
    caption_ = control.Caption.Changed.Connect([this] { ShowCaption(); });
    width_ = control.Width.Changed.Connect([this] { Fit(); });
    height_ = control.Height.Changed.Connect([this] { Fit(); });
}

void LabelView::ShowCaption()
{
    set_text(OneLine(control_.Caption()));
    Fit();
}

void LabelView::Fit()
{
    const Gdk::Rectangle place = PlaceOf(control_);
    FitCaption(*this, place.get_width(), place.get_height());
    // A field's name may be longer than its place; it can still be read as a tip.
    if (get_ellipsize() == Pango::EllipsizeMode::END) {
        set_tooltip_text(get_text());
    } else {
        set_has_tooltip(false);
    }
}

}  // namespace velmora
