// Texts of any bytes: the code page, UTF-8, letter case, search. The first line is what is searched for.
#include <algorithm>

#include "fuzz/Fuzz.h"
#include "platform/text/CodePage.h"
#include "platform/text/Search.h"
#include "platform/text/Utf8.h"

namespace velmora::fuzz {

namespace {

char Folded(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c; }

std::size_t FoundOneByOne(const std::string& text, const std::string& wanted)
{
    const auto hit = std::search(text.begin(), text.end(), wanted.begin(), wanted.end(),
                                 [](char a, char b) { return Folded(a) == Folded(b); });
    const bool isFound = hit != text.end() || wanted.empty();
    return isFound ? static_cast<std::size_t>(hit - text.begin()) : std::string::npos;
}

}  // namespace

void Try(const std::string& input)
{
    const std::string text = TextOfBytes(input);
    Expect(CharactersOf(text).size() == input.size(), "each byte is a character");
    Expect(BytesOfText(text) == input, "and comes back");
    const auto characters = CharactersOf(input);
    std::string written;
    for (const char32_t character : characters) AppendCharacter(written, character);
    Expect(CharactersOf(written) == characters, "characters come back from UTF-8");
    Expect(BytesOfText(input).size() == characters.size(), "each character is a byte");

    const std::size_t line = std::min(input.find('\n'), input.size());
    const std::string wanted = input.substr(0, line);
    const std::string searched = input.substr(line);
    const std::string lower = LowerCase(wanted);
    Expect(LowerCase(lower) == lower && EqualIgnoringCase(wanted, lower), "lower case is equal, and final");
    Expect(EqualIgnoringCase(wanted, searched) == (lower == LowerCase(searched)), "equal is equal in lower case");
    Expect(FindIgnoringCase(searched, wanted) == FoundOneByOne(searched, wanted), "a search finds the first");
}

}  // namespace velmora::fuzz
