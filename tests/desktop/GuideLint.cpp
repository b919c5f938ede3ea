// The guide under a linter for accessibility, which tools/check-guide fetches. A program of its own, which that runs.
#include <gmock/gmock.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

class GuideLint : public DesktopTest {
protected:
    /// The rules that the page breaks, and where.
    std::string Findings()
    {
        static const std::string linter = FileText(g_getenv("VELMORA_LINTER"));
        Script(linter +
               "; window.findings = null; axe.run().then(({violations}) => window.findings = violations.map("
               "({id, nodes}) => id + ': ' + nodes.map(({html}) => html).join(' ')).join('; ')); 1");
        Await("typeof findings", "string");
        return Script("findings");
    }
    /// Takes note of all pages of the guide that this one leads to.
    void NoteLinks()
    {
        std::istringstream found(Script(
            "Array.from(document.querySelectorAll('a, form, iframe'), (from) => from.href ?? from.action ?? from.src)"
            ".join('\\n')"));
        for (std::string page; std::getline(found, page);) {
            if (std::find(pages_.begin(), pages_.end(), page) == pages_.end()) pages_.push_back(page);
        }
    }

    std::vector<std::string> pages_{"velmora://guide/", "velmora://guide/popup-window", "velmora://guide/none"};
};

TEST_F(GuideLint, NoPageBreaksARuleOrIsCutOffInLightAndDarkAndAtTwiceTheSize)
{
    ASSERT_NE(g_getenv("VELMORA_LINTER"), nullptr) << "tools/check-guide says where the linter is";
    for (std::size_t i = 0; i < pages_.size(); ++i) {
        SCOPED_TRACE(pages_[i]);
        for (const bool isDark : {false, true}) {
            g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", isDark, nullptr);
            webkit_web_view_set_zoom_level(Engine().View(), isDark ? 2 : 1);
            Go(pages_[i]);
            Await("String(matchMedia('(prefers-color-scheme: dark)').matches)", isDark ? "true" : "false");
            EXPECT_EQ(Findings(), "");
            EXPECT_EQ(Script("String(document.documentElement.scrollWidth > innerWidth + 1)"), "false");
        }
        NoteLinks();
    }
    EXPECT_GT(pages_.size(), 25U);
}

}  // namespace
}  // namespace velmora::test
