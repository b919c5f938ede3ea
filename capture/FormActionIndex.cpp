#include <exception>
#include <stdexcept>

#include "platform/text/Search.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

constexpr char kFormTag[] = "<form ";

// What the index may hold in all. No real site comes near; a page that completes over and over with
// ever more forms must not eat up the memory.
constexpr std::size_t kMostIndexBytes = std::size_t{16} << 20;

std::size_t CostOf(const std::string& page, const std::string& action)
{
    return page.size() + action.size() + 2 * sizeof(std::string);
}

// The next form tag of a page, and where the search goes on after it.
struct FormTag {
    std::string text;
    std::size_t end;
};

// False if there is no further tag. Throws on a tag that does not end.
bool NextFormTag(const std::string& html, std::size_t from, FormTag& tag)
{
    const std::size_t begin = FindIgnoringCase(html, kFormTag, from);
    if (begin == std::string::npos) return false;
    const std::size_t close = html.find('>', begin + 1);
    if (close == std::string::npos) throw std::runtime_error("a form tag does not end");
    tag = {html.substr(begin, close + 1 - begin), close + 1};
    return true;
}

}  // namespace

void frmBrowser::CollectFormActions(BrowserObject& pDisp, const std::string& URL, int& noOfFormAction,
                                    std::vector<std::string>& formActionPage, std::vector<std::string>& formAction)
{
    const auto write = [&](const std::string& action) {
        const auto i = static_cast<std::size_t>(noOfFormAction);
        formActionPage.resize(i + 1);
        formAction.resize(i + 1);
        formActionPage[i] = URL;
        formAction[i] = action;
        ++noOfFormAction;
    };
    try {
        const auto document = pDisp.Document();
        if (document->FramesLength() > 0) {
            noOfFormAction = 0;
            write("*frame*");
            return;
        }
        std::size_t held = 0;
        for (std::size_t i = 0; i < static_cast<std::size_t>(noOfFormAction); ++i) {
            held += CostOf(formActionPage.at(i), formAction.at(i));
        }
        const std::string html = document->InnerHtml();
        FormTag tag{{}, 0};
        while (NextFormTag(html, tag.end, tag)) {
            const std::string action = ExtractFormAction(tag.text);
            held += CostOf(URL, action);
            if (held > kMostIndexBytes) return;
            write(action);
        }
    } catch (const std::exception&) {
        // A page that cannot be read adds no more forms; those that were found stay.
    }
}

std::string frmBrowser::ExtractFormAction(const std::string& strTag)
{
    constexpr std::string_view kAction = "action=";
    const std::size_t begin = FindIgnoringCase(strTag, kAction);
    if (begin == std::string::npos) return {};
    const std::size_t value = begin + kAction.size();
    std::size_t end = strTag.find(' ', value);
    if (end == std::string::npos) end = strTag.find('>', value);
    return end == std::string::npos ? std::string() : strTag.substr(value, end - value);
}

std::string frmBrowser::FindFormTag(const std::string& strHtml, const std::string& strId)
{
    FormTag tag{{}, 0};
    while (NextFormTag(strHtml, tag.end, tag)) {
        if (strId.empty() || FindIgnoringCase(tag.text, "id=" + strId) != std::string::npos) {
            return ExtractFormAction(tag.text);
        }
    }
    return {};
}

}  // namespace velmora
