// The kinds of elements that the playback tells apart.
#pragma once

#include <string>

namespace velmora {

enum class ElementKind { Other, Text, Password, TextArea, Radio, CheckBox, SelectOne, SelectMultiple, Submit, Image };

/// The kind of an element by its type, letter case ignored.
ElementKind KindOf(const std::string& type);

}  // namespace velmora
