// From twips to the pixels of the desktop.
#pragma once

#include <algorithm>
#include <cmath>

#include <gdkmm/rectangle.h>

#include "platform/controls/Controls.h"

namespace velmora {

constexpr Twips kTwipsPerPixel = 15;

/// The pixel edge nearest to a place. Places far beyond any screen, and what is no number, are cut to
/// what the toolkit can take.
inline int Edge(Twips twips)
{
    constexpr Twips kFarthest = 30000;
    if (std::isnan(twips)) return 0;
    return static_cast<int>(std::lround(std::clamp(twips / kTwipsPerPixel, -kFarthest, kFarthest)));
}

/// The pixels of a control within its container. Both edges are rounded, not the size, so that
/// controls that meet in twips meet in pixels.
inline Gdk::Rectangle PlaceOf(const Control& control)
{
    const int left = Edge(control.Left());
    const int top = Edge(control.Top());
    const int right = Edge(control.Left() + control.Width());
    const int bottom = Edge(control.Top() + control.Height());
    return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

}  // namespace velmora
