#include <algorithm>
#include <exception>

#include "platform/text/Search.h"
#include "playback/ElementKind.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::AutoClickSubmit(Form& form, const std::vector<std::string>& names)
{
    std::vector<std::string> fields;
    fields.reserve(names.size());
    for (const std::string& name : names) fields.push_back(LowerCase(name));
    try {
        const auto inputs = form.Document()->GetElementsByTagName("INPUT");
        bool fieldSeen = false;
        const int length = inputs->Length();
        for (int i = 0; i < length; ++i) {
            const auto input = inputs->Item(i);
            const ElementKind kind = KindOf(input->Type());
            if (kind == ElementKind::Text && !fieldSeen) {
                fieldSeen = std::find(fields.begin(), fields.end(), LowerCase(input->Name())) != fields.end();
            } else if (kind == ElementKind::Image && fieldSeen && !input->Src().empty()) {
                if (!input->Click()) AskForClick();
                return;
            }
        }
        AskForClick();
    } catch (const std::exception&) {
        // The page went away under the search: there is nothing left to click.
    }
}

void frmBrowser::AskForClick() { ShowStatus("System is unable to do auto-click, please perform click manually!"); }

}  // namespace velmora
