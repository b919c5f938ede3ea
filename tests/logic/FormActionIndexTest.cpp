#include "tests/support/LogicHarness.h"

namespace velmora::test {

TEST(FormTags, ActionOfATag)
{
    const std::pair<std::string, std::string> table[] = {
        {"<FORM action=search.cgi method=get>", "search.cgi"},
        {"<form ACTION=go.cgi?a=1&b=2 method=get>", "go.cgi?a=1&b=2"},
        {"<FORM action=\"/bin/login.asp\" method=post>", "\"/bin/login.asp\""},
        {"<FORM action=\"two words.cgi\">", "\"two"},
        {"<FORM name=f>", ""},
        {"<FORM action= method=post>", ""},
        {"<FORM name=f subaction=x.cgi>", "x.cgi"},
        {"<form action=x.cgi", ""}};
    for (const auto& [tag, action] : table) EXPECT_EQ(frmBrowser::ExtractFormAction(tag), action) << tag;
}

TEST(FormTags, TagOfAnId)
{
    const std::string html =
        "<p><form action=one.cgi id=first><FORM id=\"login\" action=two.cgi>"
        "<form formid=login action=three.cgi><form ID=Login2 action=four.cgi>";
    EXPECT_EQ(frmBrowser::FindFormTag(html, ""), "one.cgi");
    EXPECT_EQ(frmBrowser::FindFormTag(html, "login"), "three.cgi");
    EXPECT_EQ(frmBrowser::FindFormTag(html, "LOGIN2"), "four.cgi");
    EXPECT_EQ(frmBrowser::FindFormTag(html, "nobody"), "");
    EXPECT_EQ(frmBrowser::FindFormTag("<form>", ""), "") << "without a blank it is no form tag";
    EXPECT_ANY_THROW(frmBrowser::FindFormTag("<form action=x.cgi", ""));
}

class FormActionIndex : public LogicHarness {
protected:
    FormActionIndex()
    {
        site["http://h/one"] = {.forms = {{"A.cgi"}, {""}, {"/b/c.cgi"}}};
        site["http://h/two"] = {.forms = {{"two.cgi"}}};
        site["http://h/frames"] = {
            .forms = {{"own.cgi"}},
            .frames = {{.forms = {{"left.cgi"}}, .address = "http://h/left"}, {.refuses = true}}};
    }

    /// "page: action" of every live entry.
    Lines Index()
    {
        Lines lines;
        for (int i = 0; i < Program().glngNoOfFormAction; ++i) {
            const auto n = static_cast<std::size_t>(i);
            lines.push_back(Program().gstrFormActionPage[n] + ": " + Program().gstrFormAction[n]);
        }
        return lines;
    }
};

TEST_F(FormActionIndex, GrowsFromPageToPageUntilGo)
{
    Go("http://h/one");
    EXPECT_EQ(Index(), (Lines{"http://h/one: A.cgi", "http://h/one: ", "http://h/one: /b/c.cgi"}));
    Follow("http://h/none");
    Follow("http://h/two");
    EXPECT_EQ(Index().size(), 4u);
    EXPECT_EQ(Index().back(), "http://h/two: two.cgi");

    Go("http://h/two");
    EXPECT_EQ(Index(), Lines{"http://h/two: two.cgi"});
    EXPECT_EQ(Program().gstrFormAction.size() + Program().gstrFormActionPage.size(), 2u)
        << "the entries of before are cut off";
    Follow("http://h/frames");
    EXPECT_EQ(Index(), Lines{"http://h/frames: *frame*"}) << "a frame set leaves its marker alone";
    Follow("http://h/two");
    EXPECT_EQ(Index(), (Lines{"http://h/frames: *frame*", "http://h/two: two.cgi"}));
}

TEST_F(FormActionIndex, AFailureKeepsTheEntriesMadeSoFar)
{
    Go("http://h/two");
    const auto collect = [&](const CannedPage& page) {
        CannedFrame frame(page, Engine().Log);
        Program().CollectFormActions(frame, "http://h/cut", Program().glngNoOfFormAction, Program().gstrFormActionPage,
                                     Program().gstrFormAction);
    };
    collect({.html = "<form title=<form action=whole.cgi ><form action=cut.cgi"});
    collect({.refuses = true});
    EXPECT_EQ(Index(), (Lines{"http://h/two: two.cgi", "http://h/cut: whole.cgi"}));
    for (int i = 0; i < 20; ++i) collect({.html = "<form action=" + std::string(std::size_t{4} << 20, 'x') + ">"});
    EXPECT_EQ(Index().size(), 2u + 3) << "what the index may hold in all";
}

}  // namespace velmora::test
