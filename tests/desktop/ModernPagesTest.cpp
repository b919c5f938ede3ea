// Pages that draw their forms late, move within one document, keep their own state or send the data
// themselves.
#include <gmock/gmock.h>

#include <algorithm>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

class ModernPages : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/to.cgi", "arrived");
        Press("cmdPrompt");
    }
};

TEST_F(ModernPages, ADocumentThatNeverRestsIsReportedAllTheSame)
{
    Show("/busy.html", "<p id='p'></p><script>setInterval(() => { p.textContent += '.'; }, 20);</script>");
    EXPECT_FALSE(Form().Timer1.Enabled());
}

TEST_F(ModernPages, AMoveWithinADocumentCountsAsAFinishedDocument)
{
    server_.Page("/app.html",
                 "<div id='app'><form><input name='other'></form></div><script>function go() {"
                 "history.pushState({}, '', '/app/login'); setTimeout(() => { app.innerHTML ="
                 "\"<form action='/to.cgi' method='post'><input name='user'><input type='submit'></form>\"; }, 50); }"
                 "</script>");
    Keep(server_.Url("/app/login"), "user=anna");
    Go(server_.Url("/app.html"));
    Script("go(); 1");
    WaitForDocument(server_.Url("/to.cgi"));
    EXPECT_THAT(server_.Bodies("/to.cgi"), ElementsAre("user=anna"));
    EXPECT_THAT(Completed(), Contains(server_.Url("/app/login")));
}

TEST_F(ModernPages, AFormThatTheUserOpensIsFilledWhenItComesAndOnlyThat)
{
    server_.Page("/dialog.html",
                 "<form action='search.cgi'><input name='q'></form><button>Log in</button><div id='d'></div><script>"
                 "document.querySelector('button').onclick = () => setTimeout(() => { d.innerHTML = '<form action="
                 "to.cgi method=post><input name=user><input type=submit>'; }, 400);</script>");
    Keep(server_.Url("/dialog.html"), "user=anna&q=no");
    Go(server_.Url("/dialog.html"));
    Type("[name=q]", "mine");
    Click("button");
    WaitForDocument(server_.Url("/to.cgi"));
    EXPECT_THAT(server_.Bodies("/to.cgi"), ElementsAre("user=anna"));
    EXPECT_THAT(server_.Bodies("/search.cgi"), testing::IsEmpty());
    EXPECT_EQ(std::ranges::count(Completed(), server_.Url("/dialog.html")), 2);
}

TEST_F(ModernPages, APageWithoutAFormFinishesWhenWhatItAskedForHasCome)
{
    server_.Answer("/data", {.Body = "late", .Hangs = true});
    server_.Page("/drawn.html",
                 "<script>setTimeout(() => fetch('asks'), 600); fetch('data').then((r) => r.text()).then((name) => {"
                 "document.body.innerHTML = `<form action=to.cgi method=post><input name=${name}><input type=submit>`;"
                 "});</script>");
    Keep(server_.Url("/drawn.html"), "late=filled");
    SetOff(server_.Url("/drawn.html"));
    RunUntil([&] { return std::ranges::count(server_.Requests(), "/asks", &Request::Path) > 0; }, "the page at rest");
    EXPECT_THAT(Completed(), testing::Not(Contains(server_.Url("/drawn.html"))));
    server_.Release();
    WaitForDocument(server_.Url("/to.cgi"));
    EXPECT_THAT(server_.Bodies("/to.cgi"), ElementsAre("late=filled"));
}

TEST_F(ModernPages, AFormThatIsSentBeforeItsPageHasLoadedIsRecordedIfAUserSendsIt)
{
    server_.Answer("/slow", {.Hangs = true});
    server_.Page("/slow.html",
                 "<img src='slow'><form action='to.cgi' onsubmit='document.title += 1; return this.a.value !== \"\"'>"
                 "<input name='a'><input type='submit'></form>"
                 "<script>history.replaceState({}, '', 'shown.html');</script>");
    server_.Page("/self.html",
                 "<form action='to.cgi'><input name='b' value='1'></form>"
                 "<script>setTimeout(() => document.forms[0].submit(), 100);</script><img src='slow'>");
    Press("cmdRecord");
    SetOff(server_.Url("/self.html"));
    WaitForDocument(server_.Url("/to.cgi?b=1"));
    SetOff(server_.Url("/slow.html"));
    Await("document.forms.length", "1");
    Click("[type=submit]");
    Await("document.title", "1");
    Type("[name=a]", "soon");
    Expect({.text = kRecordQuestion, .button = "No"});
    Click("[type=submit]");
    WaitForDocument(server_.Url("/to.cgi?a=soon"));
    ASSERT_EQ(Form().ListView1.Count(), 1);
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Url"), server_.Url("/shown.html"));
}

TEST_F(ModernPages, ASubmissionByThePagesScriptIsRecordedAsTheUserSentIt)
{
    server_.Page("/form.html",
                 "<script>history.replaceState({}, '', 'login.html');</script>"
                 "<form action='to.cgi' method='post' onsubmit='event.preventDefault(); fetch(this.action,"
                 "{method: \"POST\", body: new URLSearchParams(new FormData(this))}); this.reset();"
                 "if (document.title) history.pushState({}, \"\", \"home.html\"); document.title = 1'>"
                 "<input name='a'><select name='s'><option value='1'>One<option value='2'>Two</select>"
                 "<datalist><input name='d' value='1'></datalist><input type='hidden' name='h'>"
                 "<input type='submit' name='go' value='Send'></form>");
    Press("cmdRecord");
    SetOff(server_.Url("/form.html"));
    WaitForDocument(server_.Url("/login.html"));
    for (const std::string text : {"first", "second"}) {
        Type("[name=a]", text);
        Script("document.forms[0].s.selectedIndex = 1; document.forms[0].h.value = 'half \\ud83d'; 1");
        Expect({.text = kRecordQuestion, .button = "No"});
        Click("[type=submit]");
        RunUntil([&] { return AllAnswered() && !Form().Timer1.Enabled(); }, "the record of " + text);
    }
    ASSERT_EQ(Form().ListView1.Count(), 2);
    const ListItem& row = Form().ListView1.Item(2);
    EXPECT_EQ(row.SubItem("Postdata"), "a=second&s=Two&d=1&h=half+%EF%BF%BD&go=Send");
    EXPECT_EQ(row.SubItem("Action"), server_.Url("/to.cgi"));
    EXPECT_EQ(row.SubItem("Url"), server_.Url("/login.html"));

    // Played back, the page's script sends it again, and nothing is recorded.
    MoveToPermanent();
    server_.ForgetRequests();
    Form().SSTab1.Tab = 0;
    SetOff(server_.Url("/form.html"));
    RunUntil([&] { return !server_.Bodies("/to.cgi").empty(); }, "the script's request");
    EXPECT_THAT(server_.Bodies("/to.cgi"), ElementsAre("a=first&s=2&d=1&h="));
    EXPECT_EQ(Form().ListView1.Count(), 1);
}

TEST_F(ModernPages, AFieldIsWrittenOnlyIfItChangesAndAsAUserWould)
{
    server_.Page(
        "/state.html",
        "<form action='to.cgi' method='post'><input name='same' value='same'><input name='new'>"
        "<input type='checkbox' name='c' value='1' checked><input type='checkbox' name='d' value='1'>"
        "<select name='s'><option>1<option>2</select><input type='radio' name='r' value='1'>"
        "<input name='log'><input type='submit'></form><script>const log = [];"
        "for (const type of ['input', 'change', 'click']) document.forms[0].addEventListener(type, async (e) => {"
        // Each has its promises, also where its handlers put in what finishes at once.
        "if (type === 'change') { document.body.append(document.createElement('iframe'));"
        "for (let i = 0; i < 7; ++i) await null; }"
        "log.push(type + ':' + e.target.name); document.title = log.join(' '); });</script>");
    Press("cmdAutoClick");
    Keep(server_.Url("/state.html"), "same=same&new=text&c=1&d=1&s=2&r=1&log=");
    Go(server_.Url("/state.html"));
    EXPECT_EQ(Script("document.title"),
              "input:new change:new click:d input:d change:d input:s change:s click:r input:r change:r");
}

TEST_F(ModernPages, AMessageOfThePageDuringAFillIsShownBehindIt)
{
    server_.Page(
        "/asks.html",
        "<form action='to.cgi' method='post'><input name='a' onchange='alert(\"one\"); alert(confirm(\"ok?\"))'>"
        "<input name='b'><input type='submit' onclick='return confirm(\"Really send?\")'></form>");
    Keep(server_.Url("/asks.html"), "a=1&b=2");
    std::vector<std::string> shown;
    g_signal_connect(
        Engine().View(), "script-dialog",
        G_CALLBACK(+[](WebKitWebView*, WebKitScriptDialog* dialog, std::vector<std::string>* texts) -> gboolean {
            texts->push_back(webkit_script_dialog_get_message(dialog));
            if (webkit_script_dialog_get_dialog_type(dialog) == WEBKIT_SCRIPT_DIALOG_CONFIRM) {
                webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
            }
            return TRUE;
        }),
        &shown);
    Go(server_.Url("/asks.html"));
    WaitForDocument(server_.Url("/to.cgi"));
    EXPECT_THAT(server_.Bodies("/to.cgi"), ElementsAre("a=1&b=2"));
    EXPECT_THAT(shown, testing::UnorderedElementsAre("one\nfalse", "Really send?"));
}

TEST_F(ModernPages, FramesThatComeGoAndNestAreReadAndLeaveNothingBehind)
{
    server_.Page(
        "/outer.html",
        "<iframe name='blank'></iframe><iframe name='gone' src='slow.html'></iframe>"
        "<iframe name='nest' src='nest.html'></iframe>"
        "<script>document.querySelector('[name=gone]').remove(); const late = document.createElement('iframe');"
        "late.src = 'late.html'; document.body.append(late);</script>");
    server_.Page("/nest.html", "<iframe src='inner.html'></iframe>");
    server_.Page("/inner.html", "<form action='to.cgi' method='post'><input name='deep'><input type='submit'></form>");
    server_.Page("/late.html", "<form action='to.cgi' method='post'><input name='late'><input type='submit'></form>");
    server_.Answer("/slow.html", {.Hangs = true});
    Press("cmdAutoClick");
    Keep(server_.Url("/inner.html"), "deep=1");
    Go(server_.Url("/outer.html"));
    EXPECT_THAT(Completed(), testing::IsSupersetOf(
                                 {server_.Url("/nest.html"), server_.Url("/inner.html"), server_.Url("/late.html")}));
    const auto document = Form().wbMyBrowser.Document();
    ASSERT_EQ(document->FramesLength(), 2) << "the blank one can hold nothing";
    const auto inner = document->Frames(0)->Document()->Frames(0)->Document();
    EXPECT_EQ(inner->Forms(0)->Elements(0)->Value(), "1") << "filled when its own document finished";
    const auto late = document->Frames(1)->Document();
    EXPECT_EQ(late->Forms(0)->Elements(0)->Name(), "late");
    Script("document.querySelectorAll('iframe').forEach((frame) => frame.remove()); 1");
    EXPECT_THROW(late->Forms(0)->Elements(0)->SetValue("x"), DocumentError);
    EXPECT_EQ(Form().wbMyBrowser.Document()->FramesLength(), 0);
}

}  // namespace
}  // namespace velmora::test
