// Pages that are bad, hang or die.
#include <gmock/gmock.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::HasSubstr;

class BadPages : public DesktopTest {
protected:
    void ExpectGoWorks()
    {
        Show("/fine.html", "<p>fine</p>");
        EXPECT_EQ(Script("document.body.innerText.trim()"), "fine");
    }
};

TEST_F(BadPages, AnAddressThatCannotBeLoadedIsExplainedAndIsNoPage)
{
    SetOff("http://127.0.0.1:9999/no <b>server</b>");
    AwaitExplanation();
    EXPECT_THAT(Script("document.body.innerText"), HasSubstr("127.0.0.1:9999/no"));
    RunUntil([&] { return Completed().back() == "about:blank"; }, "the end of the load");
    EXPECT_FALSE(Form().cmdBookmark.Enabled());
    EXPECT_FALSE(Form().Timer1.Enabled());
    ExpectGoWorks();
}

TEST_F(BadPages, AnEmptyAddressAndAPageThatIsNoHtmlKeepTheWindowRunning)
{
    SetOff("  ");
    RunUntil([&] { return Completed().back() == "about:blank"; }, "the empty page");
    Show("/plain.txt", "no <form action=x> here", "text/plain");
    ExpectGoWorks();
}

TEST_F(BadPages, ACertificateThatNobodyTrustsIsRefused)
{
    WebServer secure(WebServer::Scheme::Https);
    secure.Page("/", "secret");
    SetOff(secure.Url("/"));
    AwaitExplanation();
    EXPECT_THAT(Script("document.body.innerText"), HasSubstr("certificate"));
    EXPECT_TRUE(secure.Requests().empty());
}

TEST_F(BadPages, AWebProcessThatDiesInTheMiddleOfAReadFailsTheReadAndIsTold)
{
    Show("/form.html", "<form><input name='a' oninput='for (;;);'></form>");
    auto element = Form().wbMyBrowser.Document()->Forms(0)->Elements(0);
    webkit_web_view_terminate_web_process(Engine().View());
    EXPECT_THROW(element->SetValue("x"), DocumentError);
    AwaitExplanation();
    bool hasEnded = false;
    const auto note = +[](WebKitWebView*, WebKitWebProcessTerminationReason, bool* flag) { *flag = true; };
    g_signal_connect_after(Engine().View(), "web-process-terminated", G_CALLBACK(note), &hasEnded);
    webkit_web_view_terminate_web_process(Engine().View());
    RunUntil([&] { return hasEnded; }, "the end of the explanation");
    EXPECT_FALSE(webkit_web_view_is_loading(Engine().View())) << "it would end again, and again";
    ExpectGoWorks();
}

}  // namespace
}  // namespace velmora::test
