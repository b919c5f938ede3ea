// The distance between buttons that stand side by side.
#pragma once

#include "platform/controls/Controls.h"

namespace velmora {

/// Pixels that a button leaves free at both ends of its place.
struct ButtonMargins {
    int left;
    int right;
};

/// The margins with which all buttons of a row that meet, or overlap a little, are drawn the same
/// distance apart.
ButtonMargins MarginsOf(const CommandButton& button);

}  // namespace velmora
