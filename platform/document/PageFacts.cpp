#include "platform/document/PageFacts.h"

namespace velmora {

FormFacts ReadForm(wire::Reader& reader)
{
    FormFacts form;
    reader.Read(form.handle, form.action, form.hidesAction, form.id);
    return form;
}

ElementFacts ReadElement(wire::Reader& reader)
{
    ElementFacts element;
    reader.Read(element.handle, element.name, element.type, element.value, element.checked, element.src);
    element.options = ReadSeveral(reader, [](wire::Reader& part) {
        OptionFacts option;
        part.Read(option.text, option.value, option.selected);
        return option;
    });
    return element;
}

std::vector<ElementFacts> ReadElements(wire::Reader& reader) { return ReadSeveral(reader, ReadElement); }

}  // namespace velmora
