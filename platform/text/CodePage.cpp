#include "platform/text/CodePage.h"

#include <algorithm>
#include <iterator>

#include "platform/text/Utf8.h"

namespace velmora {

namespace {

// The codes 80 to 9F of Windows-1252; all others are the character of the same number.
constexpr char32_t kUpperControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

}  // namespace

char32_t CharacterOfCode(unsigned char code)
{
    return code >= 0x80 && code <= 0x9F ? kUpperControls[code - 0x80] : code;
}

std::optional<unsigned char> CodeOfCharacter(char32_t character)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) return static_cast<unsigned char>(character);
    const auto* const hit = std::find(std::begin(kUpperControls), std::end(kUpperControls), character);
    if (hit == std::end(kUpperControls)) return std::nullopt;
    return static_cast<unsigned char>(0x80 + (hit - std::begin(kUpperControls)));
}

std::string TextOfBytes(std::string bytes)
{
    if (IsAscii(bytes)) return bytes;
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) AppendCharacter(text, CharacterOfCode(static_cast<unsigned char>(byte)));
    return text;
}

std::string BytesOfText(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        bytes += static_cast<char>(CodeOfCharacter(NextCharacter(text, position)).value_or('?'));
    }
    return bytes;
}

}  // namespace velmora
