// Texts as UTF-8; a character is a code point. A byte that is no part of valid UTF-8 counts as one
// character, the one of that code in the code page, so that no text is refused.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Reads the character at `position` (in bytes, before the end) and moves the position past it.
char32_t NextCharacter(std::string_view text, std::size_t& position);

/// Appends a character as UTF-8.
void AppendCharacter(std::string& text, char32_t character);

/// The characters of a text.
std::vector<char32_t> CharactersOf(std::string_view text);

/// Whether a text holds nothing but ASCII, as nearly all do: each character is one byte then.
bool IsAscii(std::string_view text);

/// Whether the character is a plain letter, "a" to "z" or "A" to "Z", or a digit.
bool IsAsciiLetterOrDigit(char32_t character);

}  // namespace velmora
