// What passes between one element of a live form and its recorded field.
#include "platform/text/Search.h"
#include "playback/ElementKind.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

void SelectFirstByText(Element& element, const std::string& text)
{
    const int options = element.OptionsLength();
    for (int k = 0; k < options; ++k) {
        const auto option = element.Options(k);
        if (option->Text() == text) {
            option->Select();
            return;
        }
    }
}

void SelectAllByValue(Element& element, const std::string& value)
{
    const int options = element.OptionsLength();
    for (int k = 0; k < options; ++k) {
        const auto option = element.Options(k);
        if (option->Value() == value) option->Select();
    }
}

// The first option that is selected; null if there is none.
std::shared_ptr<Option> SelectedOption(Element& element)
{
    const int options = element.OptionsLength();
    for (int k = 0; k < options; ++k) {
        auto option = element.Options(k);
        if (option->Selected()) return option;
    }
    return nullptr;
}

}  // namespace

void frmBrowser::ReadElement(Element& element, ElementKind kind, const std::string& name, const std::string& recorded)
{
    const auto renew = [&](const std::string& live) {
        if (live != recorded) SetFieldValue(name, live, 0);
    };
    switch (kind) {
    case ElementKind::Text:
    case ElementKind::Password:
    case ElementKind::TextArea: renew(element.Value()); return;
    case ElementKind::SelectOne:
        if (const auto option = SelectedOption(element)) renew(option->Text());
        return;
    case ElementKind::Radio:
        if (element.Checked()) renew(element.Value());
        return;
    case ElementKind::CheckBox:
        // Compared in lower case, unlike the others: one with capitals always differs and is stored again as it is.
        if (element.Checked() && LowerCase(element.Value()) != recorded) SetFieldValue(name, element.Value(), 0);
        return;
    case ElementKind::SelectMultiple: {
        int count = 0;
        const int options = element.OptionsLength();
        for (int k = 0; k < options; ++k) {
            const auto option = element.Options(k);
            if (option->Selected()) SetFieldValue(name, option->Value(), ++count);
        }
        return;
    }
    default: return;
    }
}

void frmBrowser::WriteElement(Element& element, ElementKind kind, const std::string& name, const std::string& recorded)
{
    switch (kind) {
    case ElementKind::Text:
    case ElementKind::Password:
    case ElementKind::TextArea: element.SetValue(recorded); return;
    case ElementKind::SelectOne: SelectFirstByText(element, recorded); return;
    case ElementKind::Radio:
    case ElementKind::CheckBox:
        if (element.Value() == recorded) element.Check();
        return;
    case ElementKind::SelectMultiple: {
        std::vector<std::string> values;
        if (!GetFieldValues(name, values)) return;
        for (const std::string& value : values) SelectAllByValue(element, value);
        return;
    }
    default: return;
    }
}

}  // namespace velmora
