// The system code page, Windows-1252, and the few things about UTF-8 that all texts need. Texts are
// UTF-8; a character is a code point. A byte that is no part of valid UTF-8 counts as one character,
// the one of that code in the code page, so that no text is refused.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// The character of a code from 0 to 255. The five codes that Windows-1252 leaves open (81, 8D, 8F,
/// 90, 9D) give the control characters of the same number, so that every byte has a character.
char32_t CharacterOfCode(unsigned char code);

/// The code of a character, or nothing if the page does not hold it.
std::optional<unsigned char> CodeOfCharacter(char32_t character);

/// The UTF-8 text of bytes in the code page, one character for each byte.
std::string TextOfBytes(std::string_view bytes);

/// The bytes of a text in the code page; "?" for a character that it does not hold.
std::string BytesOfText(std::string_view text);

/// Reads the character at `position` (in bytes, before the end) and moves the position behind it.
char32_t NextCharacter(std::string_view text, std::size_t& position);

/// Appends a character as UTF-8.
void AppendCharacter(std::string& text, char32_t character);

/// The characters of a text.
std::vector<char32_t> CharactersOf(std::string_view text);

/// Whether the character is a plain letter, "a" to "z" or "A" to "Z", or a digit.
bool IsAsciiLetterOrDigit(char32_t character);

/// A character in lower case, if it is a letter of the code page.
char32_t LowerCaseCharacter(char32_t character);

/// The text in lower case: the letters of the code page, those beyond it as they are.
std::string LowerCase(std::string_view text);

/// Whether the lower-case forms of two texts are the same.
bool EqualIgnoringCase(std::string_view a, std::string_view b);

/// The place (from 0, in bytes) of the first `wanted` in `text` at or behind `from`, ASCII letter
/// case ignored; npos if there is none.
std::size_t FindIgnoringCase(std::string_view text, std::string_view wanted, std::size_t from = 0);

}  // namespace velmora
