// Markup in which form tags and their actions are looked for. The first line is the id that is asked for.
#include <algorithm>
#include <stdexcept>

#include "fuzz/Fuzz.h"
#include "tests/support/CannedPages.h"

namespace velmora::fuzz {

void Try(const std::string& input)
{
    const std::size_t line = std::min(input.find('\n'), input.size());
    const std::string id = input.substr(0, line);
    test::CannedFrame page({.html = "<html>" + input.substr(line)}, nullptr);
    int count = 0;
    std::vector<std::string> pages;
    std::vector<std::string> actions;
    static Program& program = *new Program;
    program.browser.CollectFormActions(page, "http://h/", count, pages, actions);
    Expect(static_cast<std::size_t>(count) == actions.size() && actions.size() == pages.size(), "an action each");
    const std::string html = page.InnerHtml();
    for (const std::string& action : actions) {
        Expect(action.find_first_of(" >") == std::string::npos, "an action ends at a blank and at its tag's end");
        Expect(html.find(action) != std::string::npos, "an action stands in the markup");
    }
    try {
        const std::string found = frmBrowser::FindFormTag(html, id);
        Expect(found.empty() || std::find(actions.begin(), actions.end(), found) != actions.end(),
               "what is found by its id is in the index");
        const std::string first = frmBrowser::FindFormTag(html, {});
        Expect(first == (actions.empty() ? "" : actions[0]), "without an id the first form counts");
    } catch (const std::runtime_error&) {
        Expect(html.find('>', html.rfind("<")) == std::string::npos, "only a tag that does not end is refused");
    }
}

}  // namespace velmora::fuzz
