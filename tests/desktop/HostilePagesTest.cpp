// Pages written against the program, and events that come at the worst moment.
#include <gmock/gmock.h>

#include <algorithm>
#include <chrono>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char kFillQuestion[] = "Do you want to auto fill-in this form";
constexpr char kLogin[] =
    "<form action='to.cgi' method='post'><input name='a'><input name='b'><button>Go</button></form>";

class HostilePages : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/to.cgi", "arrived");
        trap_.Page("/trap.html", kLogin);
        trap_.Page("/to.cgi", "got it");
    }

    void KeepSecret(const std::string& path) { Keep(server_.Url(path), "a=secret&b=too"); }
    /// A log-in page that draws its form a moment after it has loaded and begun to do something else.
    static std::string LateLogin(const std::string& something)
    {
        return "<body><script>onload = () => { " + something +
               "; setTimeout(() => document.body.insertAdjacentHTML('beforeend', `" + kLogin + "`), 150); }</script>";
    }
    void Show(const std::string& html) { DesktopTest::Show("/page.html", html); }
    void LineIsClear(const std::string& what)
    {
        RunUntil([&] { return !Form().Timer1.Enabled() && Status().empty(); }, what);
        EXPECT_TRUE(Form().cmdBookmark.Enabled());
    }
    static Response Late(const std::string& html) { return {.Body = html, .Hangs = true}; }

    WebServer trap_;  ///< Another site.
};

TEST_F(HostilePages, WhatTheUserIsAskedAboutCannotBeSwappedUnderTheQuestion)
{
    server_.Page("/login.html", LateLogin(""));
    KeepSecret("/login.html");
    trap_.Answer("/slow.html", Late(kLogin));
    // By the page around a frame: a navigation that began before the question ends under it; one that begins
    // under it waits.
    trap_.Page("/around.html", "<iframe src='" + server_.Url("/login.html") +
                                   "' onload=\"this.onload = null; frames[0].location = '/slow.html'\"></iframe>");
    Expect({.text = kFillQuestion, .button = "Ok", .before = [&] {
                const std::string here = "try { frames[0].location.pathname } catch { 'elsewhere' }";
                trap_.Release();
                RunUntil([&] { return Script(here) == "/slow.html"; }, "the trap in the frame");
                Script("frames[0].location = '/trap.html'; 1");
            }});
    Go(trap_.Url("/around.html"));
    RunUntil([&] { return Completed().back() == trap_.Url("/trap.html"); }, "the other trap");
    EXPECT_EQ(Script("frames[0].document.querySelector('input').value"), "");

    // By whoever moves the page itself.
    server_.Page("/login.html", LateLogin("location = '" + trap_.Url("/slow.html") + "'"));
    Expect({.text = kFillQuestion, .button = "Ok", .before = [&] {
                trap_.Release();
                RunUntil([&] { return Script("location.pathname") == "/slow.html"; }, "the trap in the page's place");
            }});
    SetOff(server_.Url("/login.html"));
    RunUntil([&] { return Completed().back() == trap_.Url("/slow.html"); }, "the trap");
    EXPECT_EQ(Script("document.querySelector('input').value"), "");
    EXPECT_THAT(trap_.Bodies("/to.cgi"), IsEmpty());
    EXPECT_THAT(server_.Bodies("/to.cgi"), IsEmpty());
}

TEST_F(HostilePages, SubmissionsWithoutEndAskOnceAndLeaveTheProgramToItsUser)
{
    Press("cmdRecord");
    Show(kLogin + std::string("<script>const form = document.forms[0]; form.onsubmit = (event) => {"
                              "event.preventDefault(); fetch('to.cgi', {method: 'POST'}); };"
                              "function go() { for (let i = 0; i < 1000; ++i) form.requestSubmit(); }</script>"));
    Expect({.text = kRecordQuestion, .button = "No", .before = [&] { Script("go(); 1"); }});
    Script("go(); 1");
    RunUntil([&] { return AllAnswered(); }, "the question");
    Script("go(); 1");
    LineIsClear("the end of it");
    EXPECT_THAT(Asked(), SizeIs(1));
    EXPECT_EQ(Form().ListView1.Count(), 1);
}

TEST_F(HostilePages, ANavigationWithoutADocumentPlaysNothingAndClearsTheLine)
{
    Press("cmdAutoClick");
    server_.Answer("/nothing", {.Status = 204});
    Show("<a id='here' href='#'>here</a>" + std::string(kLogin));
    KeepSecret("/page.html");
    Press("cmdPrompt");
    int announced = 0;
    Form().wbMyBrowser.BeforeNavigate2.Add([&](BeforeNavigate2Event&) { ++announced; });
    const auto isAnnounced = [&] { return std::exchange(announced, 0) > 0; };
    SetOff(server_.Url("/nothing"));
    RunUntil(isAnnounced, "the navigation");
    LineIsClear("the end of an answer without a page");
    EXPECT_EQ(Script("document.querySelector('input').value"), "") << "the page that stands is not played";
    for (int i = 0; i < 2; ++i) {
        Click("#here");
        RunUntil(isAnnounced, "the click");
        LineIsClear("the end of a move within the page");
    }
    // A frame that fails, or goes while it loads, after its page has finished.
    const std::string closed = WebServer().Url("/");
    server_.Answer("/slow", Late("slow"));
    for (const char* then : {"", "setTimeout(() => frame.remove(), 100);"}) {
        const std::string target = *then ? server_.Url("/slow") : closed;
        Script("{ const frame = document.createElement('iframe'); frame.src = '" + target +
               "'; document.body.append(frame); " + then + "} 1");
        RunUntil(isAnnounced, "the frame's navigation");
        LineIsClear("the end of a late frame");
    }
}

TEST_F(HostilePages, AFormThatIsRefusedIsNoSubmission)
{
    Press("cmdRecord");
    Show(
        "<form action='to.cgi' method='post' onsubmit='event.preventDefault(); document.title += 1;"
        "navigator.sendBeacon(`/ping`, `x`)'><input name='a' value='short'><button>Go</button></form>");
    server_.Page("/ping", "");
    Click("button");
    RunUntil([&] { return Script("document.title") == "1" && !server_.Bodies("/ping").empty(); }, "the refusal");
    Click("button");
    RunUntil([&] { return Script("document.title") == "11" && server_.Bodies("/ping").size() == 2; }, "another");
    // The form's own validation refuses, too.
    Show("<form action='to.cgi' method='post'><input name='a' required><button>Go</button></form>");
    Click("button");
    RunUntil([&] { return Script("document.activeElement.name") == "a"; }, "the focus on the field that is missing");
    EXPECT_EQ(Form().ListView1.Count(), 0);
    // One that moves on has sent it; a document that is opened anew is watched as well.
    server_.Page("/done.html", "done");
    Show(
        "<script>onload = () => { document.open(); document.write(`<form action='to.cgi' "
        "onsubmit='event.preventDefault();"
        "location.href = \"/done.html\"'><input name='a' value='1'><button>Go</button></form>`); document.close(); "
        "}</script>");
    Expect({.text = kRecordQuestion, .button = "No"});
    Click("button");
    RunUntil([&] { return AllAnswered() && Completed().back() == server_.Url("/done.html"); }, "the next page");
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=1");
}

TEST_F(HostilePages, AHandlerThatAsksTheEngineDoesNotStopAFill)
{
    Press("cmdPrompt");
    server_.Page("/sync", "answer");
    std::string handlers;
    for (const char* call :
         {"history.length", "outerWidth + screenX", "this.select(); getSelection().toString()", "moveTo(1, 1)",
          "window.open('/to.cgi')", "const r = new XMLHttpRequest(); r.open('GET', '/sync', false); r.send()",
          "document.cookie = 'a=b'", "localStorage.setItem('a', 'b')", "document.execCommand('copy')", "print()",
          "top.alert('x')", "parent.confirm('y')"}) {
        handlers += "try { " + std::string(call) + " } catch (e) { document.title += e; };";
    }
    server_.Page("/login.html", "<form action='to.cgi' method='post'><input name='a' oninput=\"" + handlers +
                                    "\"><input name='b'><button>Go</button></form>");
    server_.Page("/around.html", "<iframe src='login.html'></iframe>");
    KeepSecret("/login.html");
    g_signal_connect(Engine().View(), "script-dialog",
                     G_CALLBACK(+[](WebKitWebView*, WebKitScriptDialog*, gpointer) -> gboolean { return TRUE; }),
                     nullptr);
    const auto start = std::chrono::steady_clock::now();
    Go(server_.Url("/around.html"));
    RunUntil([&] { return !server_.Bodies("/to.cgi").empty(); }, "the filled form");
    EXPECT_THAT(server_.Bodies("/to.cgi"), ElementsAre("a=secret&b=too"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4)) << "no wait ran into its limit";
}

TEST_F(HostilePages, WhatAPageMakesTheProgramComputeDoesNotHoldTheWindow)
{
    const Heartbeat heart;
    Press("cmdRecord");
    Press("cmdPrompt");
    const std::string form = "`<form action=x${i}><input name=action></form>`";
    KeepSecret("/page.html");
    Show("<body><script>document.body.innerHTML = Array.from({length: 20000}, (_, i) => " + form +
         ").join('');</script>");
    Script("document.forms[0].insertAdjacentHTML('afterend', `<a id=long href='?${'x'.repeat(200000)}'>long</a>`); 1");
    const std::size_t before = Completed().size();
    Script("document.querySelector('#long').click(); 1");
    RunUntil([&] { return Completed().size() > before; }, "the long address");
    Show(
        "<body><script>for (let i = 0; i < 5; ++i) { const form = document.createElement('form');"
        "form.action = 'x'.repeat(1e6); document.body.append(form); }</script>");
    EXPECT_LT(heart.Longest(), 1.0);
}

TEST_F(HostilePages, EventsOfAgentsThatNobodyKnowsAreDropped)
{
    const std::size_t before = Completed().size();
    for (const std::string event : {"finished\n1\n2\n3\nhttp://bank/\n1", "submitted\n1\n2\n3\nx"}) {
        const std::size_t end = event.find('\n');
        WebKitUserMessage* message = WEBKIT_USER_MESSAGE(g_object_ref_sink(webkit_user_message_new(
            ("velmora." + event.substr(0, end)).c_str(), g_variant_new_string(event.substr(end + 1).c_str()))));
        gboolean isTaken = FALSE;
        g_signal_emit_by_name(Engine().View(), "user-message-received", message, &isTaken);
        EXPECT_TRUE(isTaken);
        g_object_unref(message);
    }
    Show("<p>page</p>");
    EXPECT_THAT(Completed(), SizeIs(before + 1));
}

}  // namespace
}  // namespace velmora::test
