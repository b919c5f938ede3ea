#include "platform/desktop/TextBoxView.h"

#include <cmath>

#include <pangomm/attrlist.h>

#include "platform/desktop/DisplayText.h"

namespace velmora {

TextBoxView::TextBoxView(TextBox& control) : control_(control)
{
    set_activates_default(true);
    set_width_chars(0);
    if (control.FontPoints > 0) {
        Pango::AttrList attributes;
        const double size = std::round(static_cast<double>(control.FontPoints) * Pango::SCALE);
        auto attribute = Pango::Attribute::create_attr_size(static_cast<int>(size));
        attributes.insert(attribute);
        set_attributes(attributes);
    }
    ShowText();
    signal_changed().connect([this] { TakeText(); });
    text_ = control.Text.Changed.Connect([this] { ShowText(); });
}

void TextBoxView::ShowText()
{
    // The entry may not be able to hold the text as it is (its length is limited, it takes valid UTF-8
    // only). The control's own text stays until the user edits.
    if (isTaking_) return;
    isShowing_ = true;
    set_text(DisplayText(control_.Text()));
    isShowing_ = false;
}

void TextBoxView::TakeText()
{
    if (isShowing_) return;
    isTaking_ = true;
    control_.Text = get_text().raw();
    isTaking_ = false;
}

}  // namespace velmora
