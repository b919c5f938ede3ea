#include "platform/desktop/Caption.h"

#include <pangomm/attrlist.h>
#include <pangomm/layout.h>

namespace velmora {
namespace {

struct Type {
    double scale;
    bool isCondensed;
    bool isWrapped;
};

// In the order of their looks. Two lines are easier to read than very small letters.
constexpr Type kTypes[] = {{1, false, false},   {1, true, false},   {0.92, true, false}, {1, false, true},
                           {1, true, true},     {0.92, true, true}, {0.85, true, true},  {0.78, true, true},
                           {0.85, true, false}, {0.7, true, true}};

Pango::AttrList AttributesOf(const Type& type)
{
    Pango::AttrList attributes;
    auto scale = Pango::Attribute::create_attr_scale(type.scale);
    attributes.insert(scale);
    if (type.isCondensed) {
        auto stretch = Pango::Attribute::create_attr_stretch(Pango::Stretch::CONDENSED);
        attributes.insert(stretch);
    }
    return attributes;
}

bool Fits(Gtk::Label& label, const Type& type, int width, int height)
{
    auto layout = label.create_pango_layout(label.get_text());
    auto attributes = AttributesOf(type);
    layout->set_attributes(attributes);
    if (type.isWrapped) {
        layout->set_width(width * Pango::SCALE);
        layout->set_wrap(Pango::WrapMode::WORD);
    }
    int textWidth = 0, textHeight = 0;
    layout->get_pixel_size(textWidth, textHeight);
    return textWidth <= width && textHeight <= height;
}

void Apply(Gtk::Label& label, const Type& type, Pango::EllipsizeMode ellipsize)
{
    auto attributes = AttributesOf(type);
    label.set_attributes(attributes);
    label.set_wrap(type.isWrapped);
    label.set_ellipsize(ellipsize);
}

}  // namespace

void FitCaption(Gtk::Label& label, int width, int height)
{
    if (!label.get_root() || width <= 0 || height <= 0) return;
    for (const Type& type : kTypes) {
        if (!Fits(label, type, width, height)) continue;
        Apply(label, type, Pango::EllipsizeMode::NONE);
        return;
    }
    Apply(label, kTypes[1], Pango::EllipsizeMode::END);
}

}  // namespace velmora
