#include "platform/desktop/ButtonGap.h"

#include "platform/desktop/Pixels.h"

namespace velmora {
namespace {

constexpr int kLeft = 2;
constexpr int kRight = 1;
// Pixels by which neighbours may overlap, or be apart, and still count as side by side.
constexpr int kWidestOverlap = 8;
constexpr int kWidestGap = 2;

/// The control that a control lies in; null for one that lies in the window itself.
const Control* Around(const Control& control) { return dynamic_cast<const Control*>(&control.Parent); }

/// The place of a control in its window.
Gdk::Rectangle PlaceInWindow(const Control& control)
{
    Gdk::Rectangle place = PlaceOf(control);
    for (const auto* around = Around(control); around; around = Around(*around)) {
        const Gdk::Rectangle origin = PlaceOf(*around);
        place.set_x(place.get_x() + origin.get_x());
        place.set_y(place.get_y() + origin.get_y());
    }
    return place;
}

int RightOf(const Gdk::Rectangle& place) { return place.get_x() + place.get_width(); }

/// True if `b` begins where `a` ends, in the same row.
bool Meet(const Gdk::Rectangle& a, const Gdk::Rectangle& b)
{
    const int overlap = RightOf(a) - b.get_x();
    return a.get_y() < b.get_y() + b.get_height() && b.get_y() < a.get_y() + a.get_height() &&
           overlap <= kWidestOverlap && overlap >= -kWidestGap;
}

/// Where two that meet are parted.
int Middle(const Gdk::Rectangle& a, const Gdk::Rectangle& b) { return (RightOf(a) + b.get_x()) / 2; }

void Part(const Container& from, const Gdk::Rectangle& place, ButtonMargins& margins)
{
    for (const Control* control : from.Controls) {
        if (const auto* inside = dynamic_cast<const Container*>(control)) Part(*inside, place, margins);
        if (!dynamic_cast<const CommandButton*>(control)) continue;
        const Gdk::Rectangle other = PlaceInWindow(*control);
        if (Meet(other, place)) margins.left = Middle(other, place) + kLeft - place.get_x();
        if (Meet(place, other)) margins.right = RightOf(place) - Middle(place, other) + kRight;
    }
}

}  // namespace

ButtonMargins MarginsOf(const CommandButton& button)
{
    const Control* outermost = &button;
    while (const Control* around = Around(*outermost)) outermost = around;
    ButtonMargins margins{kLeft, kRight};
    Part(outermost->Parent, PlaceInWindow(button), margins);
    return margins;
}

}  // namespace velmora
