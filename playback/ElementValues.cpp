// What passes between one element of a live form and its recorded field.
#include "platform/text/Search.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

bool IsTextual(const std::string& type) { return type == "text" || type == "textarea" || type == "password"; }

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

void frmBrowser::ReadElement(Element& element, const std::string& type, const std::string& name,
                             const std::string& recorded)
{
    const auto renew = [&](const std::string& live) {
        if (live != recorded) SetFieldValue(name, live, 0);
    };
    if (IsTextual(type)) {
        renew(element.Value());
    } else if (type == "select-one") {
        if (const auto option = SelectedOption(element)) renew(option->Text());
    } else if (type == "radio") {
        if (element.Checked()) renew(element.Value());
    } else if (type == "checkbox") {
        if (!element.Checked()) return;
        const std::string live = element.Value();
        if (LowerCase(live) != recorded) SetFieldValue(name, live, 0);
    } else if (type == "select-multiple") {
        int count = 0;
        const int options = element.OptionsLength();
        for (int k = 0; k < options; ++k) {
            const auto option = element.Options(k);
            if (option->Selected()) SetFieldValue(name, option->Value(), ++count);
        }
    }
}

void frmBrowser::WriteElement(Element& element, const std::string& type, const std::string& name,
                              const std::string& recorded)
{
    if (IsTextual(type)) {
        element.SetValue(recorded);
    } else if (type == "select-one") {
        SelectFirstByText(element, recorded);
    } else if (type == "radio" || type == "checkbox") {
        if (element.Value() == recorded) element.Check();
    } else if (type == "select-multiple") {
        std::vector<std::string> values;
        if (!GetFieldValues(name, values)) return;
        for (const std::string& value : values) SelectAllByValue(element, value);
    }
}

}  // namespace velmora
