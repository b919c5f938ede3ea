// What the page agent tells of forms and their elements.
#pragma once

#include <string>
#include <vector>

#include "platform/Browser.h"
#include "platform/page/Wire.h"

namespace velmora {

struct OptionFacts {
    std::string text;
    std::string value;
    bool selected = false;
};

struct ElementFacts {
    std::string handle;
    std::string name;
    std::string type;
    std::string value;
    bool checked = false;
    std::string src;
    std::vector<OptionFacts> options;
};

struct FormFacts {
    std::string handle;
    std::string action;
    std::string id;
};

/// A form as it stood at one moment.
struct FormSnapshot {
    FormFacts form;
    std::vector<ElementFacts> elements;
};

// Each throws wire::WireError if the answer makes no sense.
FormFacts ReadForm(wire::Reader& reader);
ElementFacts ReadElement(wire::Reader& reader);
std::vector<ElementFacts> ReadElements(wire::Reader& reader);

/// Reads a count and as many items. They are made one by one: the count is the other side's word.
template <class ReadItem>
auto ReadSeveral(wire::Reader& reader, ReadItem readItem)
{
    std::vector<decltype(readItem(reader))> items;
    for (std::uint64_t left = reader.Number(); left > 0; --left) items.push_back(readItem(reader));
    return items;
}

/// Runs a read of a packed answer; an answer that makes no sense is a DocumentError like any other.
template <class Parse>
auto Parsed(const std::string& packed, Parse parse)
{
    try {
        wire::Reader reader(packed);
        return parse(reader);
    } catch (const wire::WireError& error) {
        throw DocumentError(error.what());
    }
}

}  // namespace velmora
