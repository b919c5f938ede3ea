// Packed texts, and the facts of forms that are read from them.
#include "fuzz/Fuzz.h"
#include "platform/document/PageFacts.h"

namespace velmora::fuzz {

namespace {

void ExpectTextsComeBack(const std::vector<std::string>& texts)
{
    const std::string packed = wire::Pack(texts);
    Expect(packed.find('\0') == std::string::npos, "no zero in a packed text");
    wire::Reader reader(packed);
    for (const std::string& text : texts) Expect(reader.Text() == text, "a text comes back as it was");
    reader.End();
}

std::string PackedAgain(const std::vector<ElementFacts>& elements)
{
    std::vector<std::string> texts{std::to_string(elements.size())};
    for (const ElementFacts& each : elements) {
        texts.insert(texts.end(), {each.handle, each.name, each.type, each.value, each.checked ? "1" : "0", each.src});
        texts.push_back(std::to_string(each.options.size()));
        for (const OptionFacts& option : each.options) {
            texts.insert(texts.end(), {option.text, option.value, option.selected ? "1" : "0"});
        }
    }
    return wire::Pack(texts);
}

}  // namespace

void Try(const std::string& input)
{
    ExpectTextsComeBack(PiecesOf(input, '|'));
    try {
        wire::Reader reader(input);
        const auto elements = ReadElements(reader);
        Expect(elements.size() <= input.size(), "no item comes from nothing");
        const std::string packed = PackedAgain(elements);
        wire::Reader again(packed);
        Expect(PackedAgain(ReadElements(again)) == packed, "what was read is what was packed");
        again.End();
        reader.End();
    } catch (const wire::WireError&) {
        // An answer that makes no sense is refused.
    }
}

}  // namespace velmora::fuzz
