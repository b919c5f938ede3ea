// What the page agent tells of forms and their elements.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Document.h"
#include "platform/wire/Wire.h"

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
    bool hidesAction = false;  ///< A field named "action" stands in its place.
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

/// No list of a page is longer: items of a few bytes could otherwise make very much of one answer.
inline constexpr std::uint64_t kMostItems = 200'000;

/// Reads a count and as many items. They are made one by one: the count is the other side's word.
template <class ReadItem>
auto ReadSeveral(wire::Reader& reader, ReadItem readItem)
{
    std::vector<decltype(readItem(reader))> items;
    std::uint64_t left = reader.Number();
    if (left > kMostItems) throw wire::WireError("a list is too long");
    for (; left > 0; --left) items.push_back(readItem(reader));
    return items;
}

}  // namespace velmora
