#include "platform/CodePage.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace velmora {

namespace {

// The codes 80 to 9F of Windows-1252; all others are the character of the same number.
constexpr char32_t kUpperControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

constexpr char32_t kReplacement = 0xFFFD;

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

char FoldAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// The length of a UTF-8 sequence by its first byte; 1 if no sequence begins with it.
std::size_t SequenceLength(unsigned char lead)
{
    if (lead >= 0xC2 && lead <= 0xDF) return 2;
    if (lead >= 0xE0 && lead <= 0xEF) return 3;
    if (lead >= 0xF0 && lead <= 0xF4) return 4;
    return 1;
}

// The character of a sequence of two to four bytes; nothing if it is cut short, over-long, a
// surrogate or beyond the last character.
std::optional<char32_t> CharacterOfSequence(std::string_view sequence, std::size_t length)
{
    if (sequence.size() < length) return std::nullopt;
    char32_t character = static_cast<unsigned char>(sequence[0]) & (0x7Fu >> length);
    for (const char c : sequence.substr(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0u) != 0x80) return std::nullopt;
        character = (character << 6) | (byte & 0x3Fu);
    }
    constexpr char32_t kFirst[] = {0x80, 0x800, 0x10000};
    if (character < kFirst[length - 2] || character > 0x10FFFF) return std::nullopt;
    if (character >= 0xD800 && character <= 0xDFFF) return std::nullopt;
    return character;
}

// For each beginning of the pattern: the length of its longest proper beginning that is its end too.
std::vector<std::size_t> BordersOf(const std::string& pattern)
{
    std::vector<std::size_t> borders(pattern.size(), 0);
    std::size_t matched = 0;
    for (std::size_t i = 1; i < pattern.size(); ++i) {
        while (matched > 0 && pattern[i] != pattern[matched]) matched = borders[matched - 1];
        if (pattern[i] == pattern[matched]) ++matched;
        borders[i] = matched;
    }
    return borders;
}

// The next place at or behind `from` that holds the folded character.
std::size_t NextCandidate(std::string_view text, char folded, std::size_t from)
{
    if (folded < 'a' || folded > 'z') {
        const void* hit = std::memchr(text.data() + from, folded, text.size() - from);
        return hit ? static_cast<std::size_t>(static_cast<const char*>(hit) - text.data()) : std::string_view::npos;
    }
    while (from < text.size() && FoldAscii(text[from]) != folded) ++from;
    return from < text.size() ? from : std::string_view::npos;
}

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

std::string TextOfBytes(std::string_view bytes)
{
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        if (IsAscii(byte)) {
            text += byte;
        } else {
            AppendCharacter(text, CharacterOfCode(static_cast<unsigned char>(byte)));
        }
    }
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

char32_t NextCharacter(std::string_view text, std::size_t& position)
{
    const auto lead = static_cast<unsigned char>(text[position]);
    const std::size_t length = SequenceLength(lead);
    if (length > 1) {
        if (const auto character = CharacterOfSequence(text.substr(position, length), length)) {
            position += length;
            return *character;
        }
    }
    ++position;
    return CharacterOfCode(lead);
}

void AppendCharacter(std::string& text, char32_t character)
{
    if (character > 0x10FFFF || (character >= 0xD800 && character <= 0xDFFF)) character = kReplacement;
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | (character >> 6));
        tail(0);
    } else if (character < 0x10000) {
        text += static_cast<char>(0xE0 | (character >> 12));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | (character >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

std::vector<char32_t> CharactersOf(std::string_view text)
{
    std::vector<char32_t> characters;
    characters.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) characters.push_back(NextCharacter(text, position));
    return characters;
}

bool IsAsciiLetterOrDigit(char32_t character)
{
    return (character >= U'0' && character <= U'9') || (character >= U'A' && character <= U'Z') ||
           (character >= U'a' && character <= U'z');
}

char32_t LowerCaseCharacter(char32_t character)
{
    if (character >= U'A' && character <= U'Z') return character + 0x20;
    if (character < 0x80) return character;
    if (character >= 0xC0 && character <= 0xDE && character != 0xD7) return character + 0x20;
    switch (character) {
    case 0x0160:
    case 0x0152:
    case 0x017D: return character + 1;
    case 0x0178: return 0xFF;
    default: return character;
    }
}

std::string LowerCase(std::string_view text)
{
    std::string lower;
    lower.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        if (IsAscii(text[position])) {
            lower += FoldAscii(text[position++]);
        } else {
            AppendCharacter(lower, LowerCaseCharacter(NextCharacter(text, position)));
        }
    }
    return lower;
}

bool EqualIgnoringCase(std::string_view a, std::string_view b)
{
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsAscii(a[i]) && IsAscii(b[j])) {
            if (FoldAscii(a[i++]) != FoldAscii(b[j++])) return false;
        } else if (LowerCaseCharacter(NextCharacter(a, i)) != LowerCaseCharacter(NextCharacter(b, j))) {
            return false;
        }
    }
    return i == a.size() && j == b.size();
}

// The search never goes back in the text (Knuth, Morris, Pratt): page and pattern may both come from
// a page that wants to keep the program busy.
std::size_t FindIgnoringCase(std::string_view text, std::string_view wanted, std::size_t from)
{
    if (from > text.size()) return std::string_view::npos;
    if (wanted.empty()) return from;

    std::string pattern(wanted);
    std::transform(pattern.begin(), pattern.end(), pattern.begin(), FoldAscii);
    const std::vector<std::size_t> borders = BordersOf(pattern);
    std::size_t matched = 0;
    for (std::size_t i = from; i < text.size(); ++i) {
        if (matched == 0) {
            i = NextCandidate(text, pattern[0], i);
            if (i == std::string_view::npos) break;
        }
        const char c = FoldAscii(text[i]);
        while (matched > 0 && c != pattern[matched]) matched = borders[matched - 1];
        if (c == pattern[matched]) ++matched;
        if (matched == pattern.size()) return i + 1 - matched;
    }
    return std::string_view::npos;
}

}  // namespace velmora
