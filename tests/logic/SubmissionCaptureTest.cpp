#include "editor/frmEdit.h"
#include "platform/CodePage.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

constexpr char kViewNow[] = "A temporary record is created, do you want to view/edit it now? (YesNo)";

class SubmissionCapture : public LogicHarness {
protected:
    SubmissionCapture()
    {
        site["http://shop/login.html"] = {
            .forms = {{"/Bin/Login.asp", {Text("user"), Password("pass"), Submit("go", "Log in")}}}};
        site["http://shop/search.html"] = {
            .forms = {{.action = "find.cgi", .controls = {Text("q"), Submit()}, .method = "get"}}};
        site["http://shop/again.html"] = {.forms = {{.action = "login.asp", .controls = {Text("user"), Submit("go")}}}};
        site["http://shop/frames.html"] = {
            .frames = {{.forms = {{.action = "Left.cgi", .controls = {Text("a"), Submit("s")}}},
                        .address = "http://shop/left.html"}}};
        SwitchOn(Program().mnuAutoRecord);
    }

    Lines Temporary() { return Rows(Program().ListView1); }

    /// A navigation that the page did not start, announced only.
    void Announce(const std::string& url, const std::string& body = {}, const std::string& headers = {},
                  const std::string& frame = {})
    {
        BeforeNavigate2Event event{Program().wbMyBrowser, url, 0, frame, body, headers};
        Program().wbMyBrowser.BeforeNavigate2.Raise(event);
        EXPECT_FALSE(event.Cancel);
    }
};

TEST_F(SubmissionCapture, APostBecomesATemporaryRecord)
{
    Go("http://shop/login.html");
    Page().Enter("user", "Anna B");
    Page().Enter("pass", "s+c&t");
    dialogs.Answers = {Answer::No};
    SubmitForm("go");
    EXPECT_EQ(Shown(), Lines{kViewNow});
    EXPECT_EQ(Temporary(), Lines{"Session1 | Form | http://shop/login.html | http://shop/bin/login.asp | "
                                 "user=Anna+B&pass=s%2Bc%26t&go=Log+in | "
                                 "Content-Type: application/x-www-form-urlencoded\r\n"});
    EXPECT_EQ(Program().ListView1.Item(1).Key(), "K1");
    EXPECT_EQ(Program().ListView1.SelectedItem(), nullptr);
    EXPECT_EQ(Program().glngCurTab, 0);
    EXPECT_EQ(Program().glngNoOfFormAction, 0);
    EXPECT_EQ(Journal(), Lines{}) << "a capture reads the page and touches nothing";
}

TEST_F(SubmissionCapture, OnlyWhileSwitchedOnAndArmed)
{
    Go("http://shop/login.html");
    SwitchOff(Program().mnuAutoRecord);
    Announce("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Status(), "Going to http://shop/bin/login.asp...");
    SwitchOn(Program().mnuAutoRecord);
    Program().gbRecordArmed = false;
    Announce("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Temporary(), Lines{});
    EXPECT_EQ(Program().glngNoOfFormAction, 1) << "the index is kept";
}

TEST_F(SubmissionCapture, WhatIsNoSubmissionIsPassedOver)
{
    Go("http://shop/login.html");
    Announce("http://shop/bin/login.asp");
    Announce("http://shop/bin/other.asp", "user=x");
    Announce("http://shop/bin/other.asp?login.asp");
    Announce("?login.asp");
    EXPECT_EQ(Temporary(), Lines{});
    EXPECT_EQ(Program().glngNoOfFormAction, 1);
    Program().glngNoOfFormAction = 0;
    Announce("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Temporary(), Lines{});
}

TEST_F(SubmissionCapture, QueriesStayWhereTheyWere)
{
    Go("http://shop/login.html");
    dialogs.Answers = {Answer::No, Answer::No};
    Announce("http://else/login.asp?Next=A", "x=1", "H: v\r\n", "main");
    Follow("http://shop/login.html");
    Announce("http://else/LOGIN.asp?B=%zz&?c#d");
    EXPECT_EQ(Temporary(), (Lines{"Session1 | Form | http://shop/login.html | http://else/login.asp?next=a | x=1 | "
                                  "H: v\r\n | main",
                                  "Session2 | Form | http://shop/login.html | http://else/login.asp | B=%zz&?c#d"}));
}

TEST_F(SubmissionCapture, TheOldestEntryWins)
{
    Go("http://shop/login.html");
    Follow("http://shop/again.html");
    Page().Enter("user", "anna");
    dialogs.Answers = {Answer::No};
    SubmitForm("go");
    EXPECT_EQ(Temporary(), Lines{"Session1 | Form | http://shop/login.html | http://shop/login.asp | "
                                 "user=anna&go=Send | Content-Type: application/x-www-form-urlencoded\r\n"});
}

TEST_F(SubmissionCapture, AnActionThatIsTheWholeAddressKeepsItsCase)
{
    site["http://shop/whole.html"] = {.forms = {{.action = "http://Shop/Sub/Go.CGI", .controls = {Text("A")}}}};
    Go("http://shop/whole.html");
    dialogs.Answers = {Answer::No};
    SubmitForm();
    EXPECT_EQ(Program().ListView1.Item(1).SubItem("Action"), "http://Shop/Sub/Go.CGI");
}

TEST_F(SubmissionCapture, AfterAFrameSetAnyPostGoesThrough)
{
    Go("http://shop/frames.html");
    Announce("http://shop/anywhere.cgi?a=1");
    EXPECT_EQ(Temporary(), Lines{}) << "a query needs more than the marker";
    Page().MemoryFrames[0]->document->Enter("a", "two words");
    dialogs.Answers = {Answer::No};
    Engine().Submit(0, "s", 0);
    Engine().Deliver();
    EXPECT_EQ(Temporary(), Lines{"Session1 | Form | http://shop/frames.html | http://shop/left.cgi | "
                                 "a=two+words&s=Send | Content-Type: application/x-www-form-urlencoded\r\n"});
    EXPECT_EQ(Program().glngNoOfFormAction, 0);
}

TEST_F(SubmissionCapture, EveryByteOfABodyIsACharacterAndComesBackFromDisk)
{
    std::string body = "raw=";
    for (int code = 0; code < 256; ++code) body += static_cast<char>(code);
    Go("http://shop/login.html");
    dialogs.Answers = {Answer::No};
    Announce("http://shop/login.asp", body);
    const std::string captured = Program().ListView1.Item(1).SubItem("Postdata");
    EXPECT_EQ(CharactersOf(captured).size(), body.size());

    OpenRecords(1, 1);
    Press(Program().cmdSave);
    EXPECT_NE(SessionFile("shop_login_html.xml").find("<Postdata>" + body + "</Postdata>"), std::string::npos);
    Restart();
    EXPECT_EQ(Program().lvwPermanent.Item(1).SubItem("Postdata"), captured);
}

TEST_F(SubmissionCapture, YesOpensTheEditorWhileThePageStands)
{
    Go("http://shop/login.html");
    Page().Enter("user", "anna");
    OpenRecords(0);
    dialogs.Answers = {Answer::Yes};
    dialogs.Visits = {[&](Window& window) {
        auto& editor = dynamic_cast<frmEdit&>(window);
        EXPECT_EQ(Page().ControlNamed("user").value, "anna") << "the navigation waits";
        EXPECT_EQ(editor.txtValue[0].Text(), "anna");
        editor.txtSession.Text = "Shop";
        editor.txtValue[0].Text = "berta";
        Press(editor.cmdPermanentOK);
    }};
    SubmitForm("go");
    EXPECT_EQ(Shown(), (Lines{kViewNow, "dialog Edit Temporary Record Session"}));
    EXPECT_EQ(Program().SSTab1.Tab(), 1);
    EXPECT_EQ(Temporary(), Lines{});
    EXPECT_EQ(Rows(Program().lvwPermanent),
              Lines{"Shop | Form | http://shop/login.html | http://shop/bin/login.asp | "
                    "user=berta&pass=&go=Log%20in | Content-Type: application/x-www-form-urlencoded\r\n"});
    EXPECT_EQ(Engine().Sent.back().postData, "user=anna&pass=&go=Log+in") << "the page's own form went out";
}

}  // namespace velmora::test
