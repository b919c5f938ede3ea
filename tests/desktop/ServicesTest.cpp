// Pop-ups and the proxy on the real window and engine.
#include <gmock/gmock.h>
#include <gtkmm/checkbutton.h>
#include <gtkmm/entry.h>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

Gtk::Window* Popup() { return OpenWindow("Popup"); }

constexpr char kPopupQuestion[] = "Pop-up window is required, do you want to block pop-up?";

class PopupsOnScreen : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/popup.html", "<title>Small</title><form action='/to.cgi'><input name='a'></form>");
        Show("/opener.html",
             "<a id='link' target='_blank' href='/popup.html'>open in a new window</a>"
             "<p id='script' onclick=\"w = window.open('/popup.html', '', 'width=300,height=200')\">open by script</p>"
             "<p id='late' onclick=\"setTimeout(() => window.open('/popup.html'), 50)\">open later</p>");
    }
    void Open(const std::string& selector)
    {
        Expect({.text = kPopupQuestion, .button = "No"});
        Click(selector);
        RunUntil([&] { return Popup() && Popup()->get_title().raw() == server_.Url(" - Small"); }, "the pop-up's page");
    }
    std::string Told() { return Form().StatusBar1.Panels(2).Text(); }
};

TEST_F(PopupsOnScreen, WaitForTheAnswerAndOpenOutsideCaptureAndPlayback)
{
    Keep(server_.Url("/popup.html"), "a=b");
    Form().mnuAutoRecord_Click();
    const auto before = Completed().size();
    Expect({.text = kPopupQuestion, .button = "Yes", .before = [&] {
                EXPECT_THAT(server_.Bodies("/popup.html"), IsEmpty()) << "the window waits for the answer";
            }});
    Click("#script");
    RunUntil([&] { return Told() == "1 Pop-up is blocked"; }, "the refusal");
    EXPECT_EQ(Script("w"), "null");
    EXPECT_FALSE(Popup());

    Open("#script");
    EXPECT_EQ(Told(), "Pop-up is not blocked");
    EXPECT_EQ(Script("w.document.querySelector('input').value"), "") << "no record is played in a pop-up";
    Script("w.document.querySelector('input').value = 'x', w.document.forms[0].submit()");
    RunUntil([&] { return !server_.Bodies("/to.cgi").empty(); }, "the pop-up's form");
    EXPECT_EQ(Form().ListView1.Count(), 0) << "no submission is captured in a pop-up";
    EXPECT_EQ(Completed().size(), before);
    EXPECT_FALSE(Form().Timer1.Enabled());
    Script("w.close()");
    RunUntil([] { return !Popup(); }, "the pop-up to close itself");
}

TEST_F(PopupsOnScreen, OfLinksAndScriptsAreClosedByTheUserOrEndWithTheProgram)
{
    Open("#link");
    EXPECT_GT(Popup()->get_width(), 500) << "a link wishes for no size";
    Popup()->close();
    RunUntil([] { return !Popup(); }, "the pop-up to be closed");
    Open("#late");
    Form().mnuBlock_Click();
    Script("document.querySelector('#link').click()");
    RunUntil([&] { return Told() == "1 Pop-up is blocked"; }, "the refusal without a question");
    EndProgram();
    EXPECT_FALSE(Popup());
}

class ProxyOnScreen : public DesktopTest {
protected:
    /// Opens the dialog from the menu, fills it in and presses OK; the box has to say this.
    void Set(const std::string& address, const std::string& port, bool use, const std::string& told)
    {
        Expect({.text = told, .button = "Ok"});
        InDialog(
            "Proxy Setting", [this] { MainWindow().activate_action("menu.mnuProxy"); },
            [&](Gtk::Window& dialog) {
                FindIn<Gtk::Entry>(dialog, "txtIP").set_text(address);
                FindIn<Gtk::Entry>(dialog, "txtPort").set_text(port);
                FindIn<Gtk::CheckButton>(dialog, "chkUseProxy").set_active(use);
                ClickOn(FindIn(dialog, "cmdOK"));
            });
    }
    std::string Port() const { return std::to_string(server_.Port()); }

    static constexpr char kSet[] = "The IE proxy settings was updated sucsessfully.";
    static constexpr char kCleared[] = "IE Proxy settings was cleared.";
    static constexpr char kRefused[] = "Unable to update the IE proxy settings.";
};

TEST_F(ProxyOnScreen, TakesHttpAloneFromAnAddressUntilTheEnd)
{
    server_.Page("/page", "<title>By proxy</title>");
    Set("127.0.0.1", Port(), true, kSet);
    // What is no address is refused, and the old setting stays.
    for (const std::string address : {"", "two words", "host/path", "user@host", "<b>"}) {
        Set(address, "80", true, kRefused);
    }
    for (const std::string port : {"", "x", "65536", "0"}) Set("host", port, true, kRefused);
    Go("http://no-such-host.test/page");
    EXPECT_EQ(Script("document.title"), "By proxy");

    const auto proxied = server_.Requests().size();
    WebServer secure(WebServer::Scheme::Https);
    SetOff(secure.Url("/"));
    RunUntil([&] { return Script("document.body.innerText").find("certificate") != std::string::npos; },
             "the server's own certificate");
    EXPECT_THAT(server_.Requests(), SizeIs(proxied)) << "HTTPS goes directly";
    EXPECT_THAT(secure.Requests(), IsEmpty()) << "a certificate that nobody trusts is refused";

    Set("127.0.0.1", Port(), false, kCleared);
    SetOff("http://no-such-host.test/other");
    AwaitExplanation();
    EXPECT_THAT(server_.Requests(), SizeIs(proxied));

    Set("127.0.0.1", Port(), true, kSet);
    Expect({.text = kCleared, .button = "Ok"});
    EndProgram();
}

}  // namespace
}  // namespace velmora::test
