#include <malloc.h>

#include "tests/support/LogicHarness.h"

namespace velmora::test {

constexpr char kLogin[] = "http://h/Login.html";

class Playback : public LogicHarness {
protected:
    Playback()
    {
        site[kLogin] = {.forms = {{"check.cgi", {Text("user"), Submit("go"), Submit("later")}}}};
        site["http://h/check.cgi"] = {.forms = {{"next.cgi", {Text("city"), {"SUBMIT", "on"}}}}};
    }

    void KeepLogin(const std::string& url = kLogin, const std::string& name = "Login", const std::string& user = "anna")
    {
        Keep({"Form", name, url, "http://h/check.cgi", "user=" + user + "&go=Send", "", ""});
    }
    void RestartWithoutPrompt()
    {
        Restart();
        Switch(Program().mnuPromptFill, false);
    }
    static std::string Offer(const std::string& name)
    {
        return "[Session=" + name + "] Do you want to auto fill-in this form (OkCancel)";
    }
};

TEST_F(Playback, TheWholeAddressDecidesWithoutCase)
{
    KeepLogin();
    RestartWithoutPrompt();
    Pick(Program().mnuManualClick);
    site["http://h/Login.html?x"] = site["HTTP://H/LOGIN.HTML"] = site["http://h/login.html"] = site[kLogin];
    const auto fills = [&] { return Journal() == Lines{"user := anna"}; };
    Follow("http://h/Login.html?x");
    EXPECT_EQ(Journal(), Lines{});
    Follow("HTTP://H/LOGIN.HTML");
    EXPECT_TRUE(fills());
    Follow("http://h/login.html");
    EXPECT_EQ(Journal(), Lines{}) << "the address of just before is not filled again";
    Go(kLogin);
    EXPECT_TRUE(fills()) << "Go forgets it";
    Engine().Complete(kLogin);
    EXPECT_EQ(Journal(), Lines{});
    Follow("http://h/elsewhere");
    Pick(Program().mnuNoFill);
    Follow(kLogin);
    Pick(Program().mnuNoFill);
    Engine().Complete(kLogin);
    EXPECT_EQ(Journal(), Lines{}) << "an address that was not filled counts as handled, too";
}

TEST_F(Playback, TwoRowsOfOneAddressAreOfferedInTheListsOrder)
{
    KeepLogin(kLogin, "A", "anna");
    KeepLogin("HTTP://h/login.html", "B", "berta");
    Restart();
    dialogs.Answers = {Answer::Cancel, Answer::Ok, Answer::Cancel, Answer::Cancel};
    Go(kLogin);
    EXPECT_EQ(Shown(), (Lines{Offer("B"), Offer("A")})) << "start-up sorts downwards";
    EXPECT_EQ(Journal(), (Lines{"user := anna", "click go"}));
    Go(kLogin);
    EXPECT_EQ(Journal(), Lines{});
    Switch(Program().mnuPromptFill, false);
    OpenRecords(0, 1);
    Program().lvwPermanent.ColumnClick.Raise(Program().lvwPermanent.ColumnHeaders()[0]);
    Go(kLogin);
    EXPECT_EQ(Journal().front(), "user := anna") << "the upper row fills, whichever is selected";
}

TEST_F(Playback, ARecordThatFindsNoFormIsTheLastOneTried)
{
    Keep({"Form", "B", kLogin, "http://h/other.cgi", "user=wrong", "", ""});
    KeepLogin("http://h/LOGIN.html", "A");
    RestartWithoutPrompt();
    Go(kLogin);
    EXPECT_EQ(Journal(), Lines{});
    EXPECT_TRUE(Program().gbRecordArmed) << "a submission by hand is still captured";

    // A record without a pair would play the pairs of the record before it, and an address that every
    // site's frames have is no record's.
    Program().gstrFieldNames = Program().gstrFieldValues = {"user"};
    for (const char* url : {"http://h/Login.html", "about:srcdoc"}) {
        files.Texts.clear();
        Keep({"Form", "C", url, "http://h/check.cgi", *url == 'a' ? "user=x" : "no pair", "", ""});
        const auto table = Program().gstrFieldNames;
        Restart();
        Program().gstrFieldNames = Program().gstrFieldValues = table;
        Switch(Program().mnuPromptFill, false);
        site[url] = site[kLogin];
        Go(url);
        EXPECT_EQ(Journal(), Lines{}) << url;
    }
}

TEST_F(Playback, AFilledFormIsNotCapturedAndTheNextPagesRecordPlaysInItsTurn)
{
    KeepLogin();
    Keep({"Form", "City", "http://h/check.cgi", "next.cgi", "city=Bonn", "", ""});
    RestartWithoutPrompt();
    Switch(Program().mnuAutoRecord, true);
    Go(kLogin);
    Send("http://h/check.cgi", "user=anna&go=Send");
    EXPECT_EQ(Program().ListView1.Count(), 0);
    Follow("http://h/check.cgi");
    const Lines both{"user := anna", "click go", "city := Bonn", "click on"};
    EXPECT_EQ(Journal(), both);
    // The same address again is passed over, until a form comes that was not there before.
    for (const bool isNew : {false, true}) {
        if (isNew) Program().wbMyBrowser.FormsAdded.Raise(*Engine().Page, "http://h/check.cgi");
        Program().wbMyBrowser.DocumentComplete.Raise(*Engine().Page, "http://h/check.cgi");
        EXPECT_EQ(Journal(), isNew ? (Lines{"city := Bonn", "click on"}) : Lines{});
    }
}

TEST_F(Playback, EachFrameHasItsTurn)
{
    const CannedPage frame{.forms = {{"check.cgi", {Text("user")}}}, .address = "http://h/inner.html"};
    site["http://h/set.html"] = {.frames = {{.forms = {{"check.cgi", {Text("USER")}}}}, frame}};
    KeepLogin("http://h/inner.html");
    RestartWithoutPrompt();
    Pick(Program().mnuManualClick);
    Go("http://h/set.html");
    EXPECT_EQ(Journal(), Lines{"user := anna"});

    files.Texts.clear();
    KeepLogin("http://h/set.html", "Set", "berta");
    RestartWithoutPrompt();
    Go("http://h/set.html");
    EXPECT_EQ(Journal(), Lines{"USER := berta"}) << "and the set its own, through its frames";
}

TEST_F(Playback, GoToAsksAndGoes)
{
    KeepLogin();
    Keep({"Other", "Mark", "http://h/news", "", "", "", ""});
    Restart();
    Switch(Program().mnuAutoHide, false);
    Shown();
    OpenRecords(0, 1);
    dialogs.Answers = {Answer::No, Answer::Yes};
    Program().glngNoOfFormAction = 1;
    Press(Program().cmdFill);
    EXPECT_EQ(Program().glngNoOfFormAction, 0);
    EXPECT_EQ(Program().txtUrl.Text(), "velmora://guide/");
    Press(Program().cmdFill);
    EXPECT_EQ(Shown(), Lines(2, "[Address: http://h/news] Do you want to go to this address? (YesNo)"));
    EXPECT_EQ(Program().txtUrl.Text(), "http://h/news");

    dialogs.Answers = {Answer::Yes, Answer::Cancel};
    Switch(Program().mnuAutoHide, true);
    OpenRecords(0, 2);
    Press(Program().cmdFill);
    Engine().Deliver();
    EXPECT_EQ(Shown(),
              (Lines{"[Address: http://h/Login.html] Do you want to go to this form? (YesNo)", Offer("Login")}));
    EXPECT_TRUE(Program().mnuHideRecord.Checked());
}

TEST_F(Playback, AutoClickTakesTheFirstImageButtonBehindARecordedText)
{
    constexpr char kUnable[] = "System is unable to do auto-click, please perform click manually!";
    const CannedForm form{"check.cgi", {Text("User")}};
    const CannedForm search{"s.cgi", {Image("find", "f.png")}};
    CannedElement disabled{"submit", "off"};
    disabled.isDisabled = true;
    const std::tuple<const char*, CannedPage, std::string, std::string> table[] = {
        {"in another form", {.forms = {form, search}}, "user=a", "find"},
        {"in front of the field", {.forms = {search, form}}, "user=a", ""},
        {"in front and behind", {.forms = {search, form, {"", {Image("go", "g.png")}}}}, "user=a", "go"},
        {"without a source", {.forms = {form, {"", {Image("e", ""), Image("go", "g.png")}}}}, "user=a", "go"},
        {"no text field", {.forms = {{"check.cgi", {{"password", "user"}}}, search}}, "user=a", ""},
        {"a button that stays disabled",
         {.forms = {{"check.cgi", {Text("User"), disabled}}, search}},
         "user=a",
         "off!"},
        {"an encoded name", {.forms = {form, search}}, "%75ser=a", ""},
    };
    for (const auto& [what, page, post, clicked] : table) {
        CannedFrame frame(page, Engine().Log);
        Program().StatusBar1.Panels(1).Text = "";
        std::string action = "check.cgi";
        std::string data = post;
        Program().ProcessForm("WRITE", *frame.Document(), action, data);
        const Lines did = Journal();
        EXPECT_EQ(did.size() > 1 ? did[1] : "", clicked.empty() ? "" : "click " + clicked) << what;
        EXPECT_EQ(Status(), clicked.empty() || clicked.ends_with('!') ? kUnable : "") << what;
    }
}

#ifdef __SANITIZE_ADDRESS__
// The sanitizer's own allocator is not mallinfo2's.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
std::size_t BytesInUse() { return __sanitizer_get_current_allocated_bytes(); }
#else
std::size_t BytesInUse() { return mallinfo2().uordblks; }
#endif

TEST_F(Playback, ADayOfFillingAndRecordingLeavesNothingBehindButTheRecords)
{
    KeepLogin();
    RestartWithoutPrompt();
    Pick(Program().mnuManualClick);
    Switch(Program().mnuAutoRecord, true);
    const auto visit = [&] {
        Go(kLogin);
        ASSERT_EQ(Journal(), Lines{"user := anna"});
        Go("http://h/check.cgi");
        dialogs.Answers = {Answer::No};
        Send("http://h/next.cgi", "city=Rome");
        ASSERT_EQ(Program().ListView1.Count(), 1);
        Program().ListView1.Remove(Program().ListView1.Item(1));
        Shown();
        Engine().Visited.clear();
    };
    for (int i = 0; i < 100; ++i) visit();
    const std::size_t before = BytesInUse();
    for (int i = 0; i < 5000; ++i) visit();
    EXPECT_LT(BytesInUse(), before + 1000) << "bytes for 10,000 navigations";
}

}  // namespace velmora::test
