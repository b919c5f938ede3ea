#include "playback/ElementKind.h"

#include "platform/text/Search.h"

namespace velmora {

ElementKind KindOf(const std::string& type)
{
    static constexpr struct {
        const char* type;
        ElementKind kind;
    } kKinds[] = {
        {"text", ElementKind::Text},
        {"password", ElementKind::Password},
        {"textarea", ElementKind::TextArea},
        {"radio", ElementKind::Radio},
        {"checkbox", ElementKind::CheckBox},
        {"select-one", ElementKind::SelectOne},
        {"select-multiple", ElementKind::SelectMultiple},
        {"submit", ElementKind::Submit},
        {"image", ElementKind::Image},
    };
    for (const auto& [name, kind] : kKinds) {
        if (EqualIgnoringCase(type, name)) return kind;
    }
    return ElementKind::Other;
}

}  // namespace velmora
