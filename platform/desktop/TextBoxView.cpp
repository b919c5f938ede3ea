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
    // The entry may not be able to hold the text as it is (it takes valid UTF-8 only). The control's own
    // text stays until the user edits.
    if (isTaking_) return;
    const Glib::ustring text = DisplayText(control_.Text());
    isShowing_ = true;
    set_text(text);
    isShowing_ = false;
    // Its length is limited, too. An edit of the beginning would throw away the rest unseen.
    const bool isWhole = get_text().bytes() == text.bytes();
    set_editable(isWhole);
    if (isWhole) {
        set_has_tooltip(false);
    } else {
        set_tooltip_text("This text is too long to be edited here. It is kept as it is.");
    }
}

void TextBoxView::TakeText()
{
    if (isShowing_) return;
    isTaking_ = true;
    control_.Text = get_text().raw();
    isTaking_ = false;
}

}  // namespace velmora
