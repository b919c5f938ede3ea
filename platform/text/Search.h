// Texts compared and searched without regard to letter case.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmora {

/// A character in lower case, if it is a letter of the code page.
char32_t LowerCaseCharacter(char32_t character);

/// The text in lower case: the letters of the code page, those beyond it as they are.
std::string LowerCase(std::string_view text);

/// Whether the lower-case forms of two texts are the same.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// The place (from 0, in bytes) of the first `wanted` in `text` at or after `from`, ASCII letter
/// case ignored; npos if there is none.
std::size_t FindIgnoringCase(std::string_view text, std::string_view wanted, std::size_t from = 0);

}  // namespace velmora
