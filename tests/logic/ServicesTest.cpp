#include "services/frmProxy.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

class Services : public LogicHarness {};

TEST_F(Services, PopupsAreAskedAboutUntilTheyAreBlocked)
{
    /// A page asks for a window; whether it was refused, and what panel 2 says.
    const auto ask = [&] {
        bool cancel = false;
        Program().wbMyBrowser.NewWindow2.Raise(cancel);
        return (cancel ? "refused: " : "let through: ") + Program().StatusBar1.Panels(2).Text();
    };
    dialogs.Answers = {Answer::Yes, Answer::No, Answer::Yes};
    EXPECT_EQ(ask(), "refused: 1 Pop-up is blocked");
    EXPECT_EQ(ask(), "let through: Pop-up is not blocked");
    EXPECT_EQ(ask(), "refused: 2 Pop-up is blocked");
    EXPECT_EQ(Shown(), Lines(3, "Pop-up window is required, do you want to block pop-up? (YesNo, Yes is safe)"));
    Switch(Program().mnuBlock, true);
    EXPECT_EQ(ask(), "refused: 3 Pop-up is blocked");
    Switch(Program().mnuBlock, false);
    bool cancel = true;
    Program().wbMyBrowser.NewWindow2.Raise(cancel);
    EXPECT_TRUE(cancel) << "refused by the browser, and counted without a question";
    dialogs.Answers = {Answer::Yes};
    EXPECT_EQ(ask(), "refused: 5 Pop-up is blocked");
}

class ProxySetting : public LogicHarness {
protected:
    frmProxy& Dialog() { return Program().ProxyDialog(); }
    /// The user fills in the dialog and presses OK or Cancel.
    void Set(const std::string& ip, const std::string& port, bool use, bool ok = true)
    {
        InDialog<frmProxy>([=](frmProxy& dialog) {
            dialog.txtIP.Text = ip;
            dialog.txtPort.Text = port;
            dialog.chkUseProxy.Value = use ? 1 : 0;
            Press(ok ? dialog.cmdOK : dialog.cmdCancel);
        });
        Pick(Program().mnuProxy);
    }
    static constexpr char kSet[] = "[IE Proxy Settings] The IE proxy settings was updated sucsessfully. (i)";
    static constexpr char kCleared[] = "[IE Proxy Settings] IE Proxy settings was cleared. (i)";
    static constexpr char kRefused[] = "[IE Proxy Settings] Unable to update the IE proxy settings. (!)";
};

TEST_F(ProxySetting, IsAppliedClearedOrRefused)
{
    EXPECT_EQ(Dialog().chkUseProxy.Value(), 1);
    EXPECT_FALSE(Dialog().cmdProxy.Visible());
    Set("host", "80", true);
    Set("", "", true);
    Set("host", "80", false);
    proxy.Accepts = false;
    Set("host", "81", true);
    EXPECT_EQ(proxy.Calls, (Lines{"3 http=host:80", "3 http=:", "1 http=host:80", "3 http=host:81"}));
    const std::string dialog = "dialog Proxy Setting";
    EXPECT_EQ(Shown(), (Lines{dialog, kSet, dialog, kSet, dialog, kCleared, dialog, kRefused}));
    EXPECT_FALSE(Dialog().Visible());
    Set("draft", "1", true, false);
    EXPECT_EQ(proxy.Calls.size(), 4u);
    EXPECT_EQ(Dialog().txtIP.Text(), "draft") << "Cancel keeps what the boxes hold";
}

TEST_F(ProxySetting, IsResetAtExitAndStaysSoWhenTheUserStaysAfterAll)
{
    const std::tuple<const char*, std::string, int, Lines> table[] = {{"never used", "", 1, {}},
                                                                      {"only blanks", "   ", 1, {}},
                                                                      {"switched off", "host", 0, {}},
                                                                      {"in use", " host ", 1, {"1 http= host :80"}}};
    for (const auto& [what, ip, use, calls] : table) {
        Restart();
        AddTemporary({"Form", "t", "http://h/", "", "", "", ""});
        Dialog().txtIP.Text = ip;
        Dialog().txtPort.Text = "80";
        Dialog().chkUseProxy.Value = use;
        dialogs.Answers = {Answer::No, Answer::Yes};
        Pick(Program().mnuExit);
        EXPECT_FALSE(dialogs.Ended) << what;
        Program().CloseRequested.Raise();
        EXPECT_TRUE(std::exchange(dialogs.Ended, false)) << what << ": the close box asks as well";
        EXPECT_EQ(std::exchange(proxy.Calls, {}), calls) << what;
        Lines shown(2, "You have temporary record not saved as permanent yet, do you really want to exit? (YesNo)");
        if (!calls.empty()) shown.insert(shown.begin(), kCleared);
        EXPECT_EQ(Shown(), shown) << what;
    }
    Restart();
    Pick(Program().mnuExit);
    EXPECT_TRUE(dialogs.Ended) << "nothing to ask about";
}

TEST_F(ProxySetting, ServersAreHandedOutOnce)
{
    proxyTable.Servers = {{"one", "80"}, {"", "81"}, {"a:b", "82"}};
    const auto press = [&] {
        Dialog().cmdProxy.Click.Raise();
        return Dialog().txtIP.Text() + " " + Dialog().txtPort.Text();
    };
    EXPECT_EQ(press(), "one 80");
    EXPECT_EQ(press(), " 81");
    EXPECT_EQ(press(), "a b:82");
    EXPECT_EQ(press(), "a b:82") << "no free server, no change";
    EXPECT_EQ(proxyTable.Calls.front(), "/app/proxyserver.mdb Y");
    EXPECT_EQ(Shown(), Lines{});
}

}  // namespace velmora::test
