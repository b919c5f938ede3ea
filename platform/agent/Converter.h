// Texts in the encodings that the engine leaves to its library of converters.
#pragma once

#include <string>
#include <string_view>

namespace velmora {

/// The bytes of a UTF-8 text without a zero in an encoding, as the engine makes them for a form: the
/// nearest character stands for one that the encoding does not hold, or "&#number;"; one that is
/// never visible is left out. Empty if there is no such converter, as it is in the engine.
std::string Convert(std::string_view text, const std::string& encoding);

}  // namespace velmora
