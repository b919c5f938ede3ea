#include "tests/support/LogicHarness.h"

namespace velmora::test {

class FormWalker : public LogicHarness {
protected:
    FormWalker() { Switch(Program().mnuAutoClick, false); }

    /// Walks a page in "WRITE" mode; what was written and clicked, and "hit" or "no hit" at the end.
    Lines Play(const CannedPage& page, std::string post, std::string action = "http://h/a.cgi")
    {
        CannedFrame frame(page, Engine().Log);
        const bool hit = Program().ProcessForm("WRITE", *frame.Document(), action, post);
        Lines lines = Journal();
        lines.push_back(hit ? "hit" : "no hit");
        return lines;
    }

    /// The post data that "READ" makes of a page with this form.
    std::string Capture(std::vector<CannedElement> elements, std::string post)
    {
        CannedFrame frame({.forms = {{"a.cgi", std::move(elements)}}}, Engine().Log);
        std::string action = "http://h/a.cgi";
        Program().ProcessForm("READ", *frame.Document(), action, post);
        EXPECT_EQ(Journal(), Lines{}) << "a capture writes nothing";
        return post;
    }
};

TEST_F(FormWalker, FillsEachKindOfElement)
{
    const CannedPage page{
        .forms = {{"a.cgi",
                   {Text("User"),
                    {"PASSWORD", "pass", "old"},
                    {"textarea", "note"},
                    {"hidden", "token", "page"},
                    Select("select-one", "color", {{"Blue", "Red"}, {"Red", "1"}, {"Red", "3"}}),
                    Radio("size", "S", true),
                    Radio("size", "L"),
                    Box("news", "yes"),
                    Box("tour", "Y"),
                    Select("select-multiple", "tags",
                           {{"one", "1"}, {"two", "2"}, {"three", "3", true}, {"zwei", "2"}, {"none", ""}}),
                    Submit("go")}}}};
    EXPECT_EQ(Play(page,
                   "use=0&users=1&USER=anna+b&p%41ss=%41&note=x%0D%0Ay&token=rec&color=Red&size=L&news=yes&tour=y&tags="
                   "2&tags=1"),
              (Lines{"User := anna b", "pass := A", "note := x\r\ny", "choose color: Red", "check size=L",
                     "check news=yes", "choose tags: two", "choose tags: zwei", "choose tags: one", "hit"}));
    EXPECT_FALSE(Program().gbRecordArmed) << "a filled form is not captured again";
    EXPECT_EQ(Play(page, "user=a"), (Lines{"User := a", "pass := ", "note := ", "hit"}))
        << "texts that the record lacks are emptied, nothing is unticked or unchosen";
}

TEST_F(FormWalker, FindsTheFormByActionAndFirstElement)
{
    const CannedForm other{"other.cgi", {Text("user")}};
    const CannedForm fits{"/b/A.cgi?x", {Text("user")}};
    const CannedForm search{"a.cgi", {Text("q"), Text("user")}};
    const CannedForm box{"a.cgi", {Box("keep", "1"), Text("user")}};
    const CannedForm named{"/b/A.cgi?x", {Text("USER")}};
    EXPECT_EQ(Play({.forms = {other, search, box, named, fits}}, "user=anna"), (Lines{"USER := anna", "hit"}));
    EXPECT_EQ(Play({.forms = {other, search}}, "user=anna"), Lines{"no hit"});
    EXPECT_EQ(Play({.forms = {{"a.cgi", {}}, fits}}, "user=anna"), Lines{"hit"}) << "a form without elements fits";
    EXPECT_EQ(Play({}, "user=anna"), Lines{"no hit"});
}

TEST_F(FormWalker, AFieldNamedActionDoesNotHideTheForm)
{
    CannedPage page{.forms = {{"b.cgi"}, {"[object]", {Text("action")}, "f2"}},
                    .html = "<form action=b.cgi id=f1><form action=a.cgi id=f2>"};
    EXPECT_EQ(Play(page, "action=go"), (Lines{"action := go", "hit"}));
    page.forms[1].id.clear();
    EXPECT_EQ(Play(page, "action=go"), Lines{"no hit"}) << "without an id the page's first form tag counts";
}

TEST_F(FormWalker, AFailureEndsTheFillWhereItIs)
{
    Switch(Program().mnuAutoClick, true);
    CannedElement broken = Text("b");
    broken.unreadable = true;
    EXPECT_EQ(Play({.forms = {{"a.cgi", {Text("a"), broken, Text("c"), Submit("go")}}}}, "a=1&b=2&c=3"),
              (Lines{"a := 1", "no hit"}));
    EXPECT_TRUE(Program().gbRecordArmed);
    EXPECT_EQ(Capture({Text("a", "new"), broken}, "a=old&b="), "a=old&b=") << "a failure keeps the post data";
}

TEST_F(FormWalker, CapturesWhatTheUserSees)
{
    const std::vector<CannedOption> colors{{"Blue", "2"}, {"Dark Red", "1", true}};
    const std::vector<CannedOption> tags{{"a", "1", true}, {"b", "2", true}, {"c", "3", true}};
    const std::tuple<const char*, std::vector<CannedElement>, std::string, std::string> table[] = {
        {"nothing differs", {Text("A", "x y")}, "a=x+y&rest=%7E&flag", "a=x+y&rest=%7E"},
        {"a script changed what it sent", {Text("a", "plain")}, "a=scrambled", "a=plain"},
        {"a plus sign", {Text("a", "1+1")}, "a=1%2B1", "a=1%2B1"},
        {"a list by its text", {Select("select-one", "color", colors)}, "color=1", "color=Dark%20Red"},
        {"a radio", {Radio("r", "x"), Radio("r", "y", true)}, "r=z", "r=y"},
        {"an unticked box changes nothing", {Box("b", "x")}, "b=z", "b=z"},
        {"a box is compared in lower case", {Box("b", "yes", true)}, "b=YES", "b=yes"},
        {"a box in capitals always differs", {Box("b", "Yes", true)}, "b=Y%65s", "b=Yes"},
        {"two boxes of a name", {Box("a", "1", true), Box("a", "2", true)}, "a=1&a=2", "a=2&a=2"},
        {"two texts of a name", {Text("a", "1"), Text("a", "2")}, "a=1&a=2", "a=2&a=2"},
        {"a list of many, entry by entry", {Select("select-multiple", "t", tags)}, "t=x&u=&t=y", "t=1&u=&t=2"},
        {"hidden and file fields stay", {Text("a"), {"hidden", "h", "now"}}, "a=&h=then", "a=&h=then"},
        {"a later field that was not sent", {Text("a", "1"), Text("new", "2")}, "a=1", "a=1"},
        {"the first field was not sent", {Box("c", "1"), Text("a", "new")}, "a=old", "a=old"},
        {"no script is lost", {Text("a", "Ωé日")}, "a=%CE%A9", "a=%u03A9%E9%u65E5"},
    };
    for (const auto& [what, controls, sent, captured] : table) EXPECT_EQ(Capture(controls, sent), captured) << what;
}

TEST_F(FormWalker, FramesComeBeforeTheirPage)
{
    const auto frame = [](const std::string& field) { return CannedPage{.forms = {{"a.cgi", {Text(field)}}}}; };
    const CannedPage refusing{.forms = {{"a.cgi", {Text("user")}}}, .refuses = true};
    auto nested = frame("q");
    nested.frames = {frame("user")};
    const auto process = [&](const CannedPage& page) {
        CannedFrame top(page, Engine().Log);
        std::string action = "a.cgi";
        std::string post = "user=anna&last=b";
        Program().ProcessDocument(top, "WRITE", action, post);
        return Journal();
    };
    auto page = frame("user");
    page.frames = {frame("q"), refusing, frame("last"), frame("user")};
    EXPECT_EQ(process(page), Lines{"last := b"}) << "the first frame that fits, and no other";
    page.frames = {refusing, nested};
    EXPECT_EQ(process(page), Lines{"user := anna"}) << "the page itself last, frames of frames never";
    EXPECT_EQ(process(refusing), Lines{});
}

}  // namespace velmora::test
