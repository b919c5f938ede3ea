// The system code page, Windows-1252. Texts are UTF-8; a character is a code point.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmora {

/// The character of a code from 0 to 255. The five codes that Windows-1252 leaves open (81, 8D, 8F,
/// 90, 9D) give the control characters of the same number, so that every byte has a character.
char32_t CharacterOfCode(unsigned char code);

/// The code of a character, or nothing if the code page does not hold it.
std::optional<unsigned char> CodeOfCharacter(char32_t character);

/// The UTF-8 text of bytes in the code page, one character for each byte.
std::string TextOfBytes(std::string bytes);

/// The bytes of a text in the code page; "?" for a character that it does not hold.
std::string BytesOfText(std::string_view text);

}  // namespace velmora
