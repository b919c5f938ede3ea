#include "platform/text/Search.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/text/Utf8.h"

namespace velmora {

namespace {

bool IsAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

char FoldAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

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

// The next place at or after `from` that holds the folded character.
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
    if (IsAscii(text)) {
        lower = text;
        std::transform(lower.begin(), lower.end(), lower.begin(), FoldAscii);
        return lower;
    }
    lower.reserve(text.size());
    for (std::size_t position = 0; position < text.size();) {
        AppendCharacter(lower, LowerCaseCharacter(NextCharacter(text, position)));
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
