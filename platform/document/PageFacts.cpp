#include "platform/document/PageFacts.h"

namespace velmora {

FormFacts ReadForm(wire::Reader& reader)
{
    FormFacts form;
    form.handle = reader.Text();
    form.action = reader.Text();
    form.id = reader.Text();
    return form;
}

ElementFacts ReadElement(wire::Reader& reader)
{
    ElementFacts element;
    element.handle = reader.Text();
    element.name = reader.Text();
    element.type = reader.Text();
    element.value = reader.Text();
    element.checked = reader.Flag();
    element.src = reader.Text();
    element.options = ReadSeveral(reader, [](wire::Reader& part) {
        OptionFacts option;
        option.text = part.Text();
        option.value = part.Text();
        option.selected = part.Flag();
        return option;
    });
    return element;
}

std::vector<ElementFacts> ReadElements(wire::Reader& reader) { return ReadSeveral(reader, ReadElement); }

}  // namespace velmora
