// Post data: taken apart and joined, escaped texts in both directions, lookups by name.
#include <algorithm>

#include "fuzz/Fuzz.h"
#include "platform/text/Search.h"
#include "platform/text/Utf8.h"

namespace velmora::fuzz {

namespace {

/// What comes back of a text that was escaped: a plus sign is a blank, the blanks at its ends are gone.
std::vector<char32_t> KeptOf(const std::string& text)
{
    const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
    auto kept = CharactersOf(text.substr(first, text.find_last_not_of(' ') + 1 - first));
    std::replace(kept.begin(), kept.end(), U'+', U' ');
    return kept;
}

void ExpectEscapedComesBack(const std::string& text)
{
    const std::string encoded = frmBrowser::EncodeFieldText(text);
    Expect(encoded.find_first_of("&=+ ") == std::string::npos, "an escaped text fits between the separators");
    Expect(CharactersOf(frmBrowser::DecodeFieldText(encoded)) == KeptOf(text), "what was escaped comes back");
    Expect(CharactersOf(frmBrowser::DecodeFieldText(text)).size() <= text.size(), "nothing comes of nothing");
}

}  // namespace

void Try(const std::string& input)
{
    ExpectEscapedComesBack(input);
    static Program& program = *new Program;
    auto& names = program.browser.gstrFieldNames;
    auto& values = program.browser.gstrFieldValues;
    names.clear();
    values.clear();
    program.browser.SplitPostdata(input, names, values);
    Expect(names.size() == values.size() && names.size() <= 60, "a value for each name, 60 at most");
    if (names.empty()) return;
    const std::string joined = frmBrowser::JoinPostdata(names, values);
    const auto pieces = PiecesOf(input, '&');
    const bool isWhole = pieces.size() <= 60 && std::all_of(pieces.begin(), pieces.end(), [](const auto& piece) {
                             return piece.find('=') != std::string::npos;
                         });
    Expect(!isWhole || joined == input, "pairs are kept to the byte");
    const auto namesBefore = names;
    program.browser.SplitPostdata(joined, names, values);
    Expect(names == namesBefore && frmBrowser::JoinPostdata(names, values) == joined, "joined and split again");

    const std::string name = LowerCase(frmBrowser::DecodeFieldText(names.back()));
    std::string value;
    Expect(program.browser.GetFieldValue(name, value), "a field is found by its name");
    Expect(program.browser.SetFieldValue(name, input, 0), "and set by it");
    Expect(program.browser.GetFieldValue(name, value) && CharactersOf(value) == KeptOf(input), "to what was asked for");
}

}  // namespace velmora::fuzz
