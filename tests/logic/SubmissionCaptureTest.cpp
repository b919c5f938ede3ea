#include "editor/frmEdit.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

constexpr char kViewNow[] = "A temporary record is created, do you want to view/edit it now? (YesNo)";

class SubmissionCapture : public LogicHarness {
protected:
    SubmissionCapture()
    {
        site["http://shop/login.html"] = {
            .forms = {{"/Bin/Login.asp", {Text("user", "Anna B"), {"password", "pass", "s+c&t"}, Submit("go")}}}};
        site["http://shop/again.html"] = {.forms = {{"login.asp", {Text("user", "anna"), Submit("go")}}}};
        const auto frame = [](const char* value) { return CannedPage{.forms = {{"Left.cgi", {Text("a", value)}}}}; };
        site["http://shop/frames.html"] = {.frames = {frame("of the other frame"), frame("new")}};
        Switch(Program().mnuAutoRecord, true);
    }

    Lines Temporary() { return Rows(Program().ListView1); }
};

TEST_F(SubmissionCapture, APostBecomesATemporaryRecord)
{
    Go("http://shop/login.html");
    dialogs.Answers = {Answer::No};
    Send("http://shop/bin/login.asp", "user=Anna+B&pass=s%2Bc&go=Log\x80in\xE9", "Content-Type: x\r\n");
    EXPECT_EQ(Shown(), Lines{kViewNow});
    EXPECT_EQ(Temporary(), Lines{"Session1 | Form | http://shop/login.html | http://shop/bin/login.asp | "
                                 "user=Anna+B&pass=s%2Bc%26t&go=Log€iné | Content-Type: x\r\n"})
        << "what the user sees in the page goes before what was sent";
    EXPECT_EQ(Program().ListView1.Item(1).Key(), "K1");
    EXPECT_EQ(Program().ListView1.SelectedItem(), nullptr);
    EXPECT_EQ(Program().glngNoOfFormAction, 0);

    OpenRecords(1, 1);
    Press(Program().cmdDelete);
    Go("http://shop/login.html");
    dialogs.Answers = {Answer::No};
    Send("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Program().ListView1.Item(1).Key() + Program().ListView1.Item(1).Text(), "K2Session2");
}

TEST_F(SubmissionCapture, OnlyWhileSwitchedOnAndArmed)
{
    Go("http://shop/login.html");
    Switch(Program().mnuAutoRecord, false);
    Send("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Status(), "Going to http://shop/bin/login.asp...");
    Switch(Program().mnuAutoRecord, true);
    Program().gbRecordArmed = false;
    Send("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Temporary(), Lines{});
    EXPECT_EQ(Program().glngNoOfFormAction, 1) << "the index is kept";
}

TEST_F(SubmissionCapture, WhatIsNoSubmissionIsPassedOver)
{
    Go("http://shop/login.html");
    Send("http://shop/bin/login.asp");
    Send("http://shop/bin/other.asp", "user=x");
    Send("http://shop/bin/other.asp?login.asp");
    Send("?login.asp");
    EXPECT_EQ(Temporary(), Lines{});
    EXPECT_EQ(Program().glngNoOfFormAction, 1);
    Program().glngNoOfFormAction = 0;
    Send("http://shop/bin/login.asp", "user=x");
    EXPECT_EQ(Temporary(), Lines{});
    // On a page that stayed the user goes on: its forms are noted again. Without a pair the form is not read.
    Program().gstrFieldNames = Program().gstrFieldValues = {"user"};
    Program().wbMyBrowser.DocumentResumed.Raise(*Engine().Page, "http://shop/login.html");
    dialogs.Answers = {Answer::No};
    Send("http://shop/bin/login.asp", "user");
    ASSERT_EQ(Program().ListView1.Count(), 1);
    EXPECT_EQ(Program().ListView1.Item(1).SubItem("Postdata"), "user");
}

TEST_F(SubmissionCapture, QueriesStayWhereTheyWere)
{
    Go("http://shop/login.html");
    dialogs.Answers = {Answer::No, Answer::No};
    Send("http://else/login.asp?Next=A", "x=1", "H: v\r\n", "main");
    Follow("http://shop/login.html");
    Send("http://else/LOGIN.asp?B=%zz&?c#d");
    EXPECT_EQ(Temporary(), (Lines{"Session1 | Form | http://shop/login.html | http://else/login.asp?next=a | x=1 | "
                                  "H: v\r\n | main",
                                  "Session2 | Form | http://shop/login.html | http://else/login.asp | B=%zz&?c#d"}));
}

TEST_F(SubmissionCapture, AnActionThatIsTheWholeAddressKeepsItsCase)
{
    site["http://shop/whole.html"] = {.forms = {{"http://Shop/Sub/Go.CGI", {Text("A", "1")}}}};
    site["http://shop/none.html"] = {.forms = {{""}}};
    Go("http://shop/none.html");
    Follow("http://shop/whole.html");
    dialogs.Answers = {Answer::No};
    Send("http://shop/SUB/Go.CGI", "A=1");
    EXPECT_EQ(Program().ListView1.Item(1).SubItem("Action"), "http://shop/SUB/Go.CGI");
}

TEST_F(SubmissionCapture, TheOldestEntryWinsAndAfterAFrameSetAnyPostGoesThrough)
{
    Go("http://shop/frames.html");
    Follow("http://shop/again.html");
    Send("http://shop/anywhere.cgi?a=1");
    EXPECT_EQ(Temporary(), Lines{}) << "a query needs more than the marker";
    dialogs.Answers = {Answer::No, Answer::No};
    Send("http://shop/Login.asp", "user=b");
    Go("http://shop/frames.html");
    Send("http://shop/Left.cgi", "a=old", {}, "main", Engine().Page->frames[1].get());
    EXPECT_EQ(Temporary(),
              (Lines{"Session1 | Form | http://shop/frames.html | http://shop/login.asp | user=anna",
                     "Session2 | Form | http://shop/frames.html | http://shop/left.cgi | a=new |  | main"}));
}

TEST_F(SubmissionCapture, YesOpensTheEditorBeforeTheNavigationGoesOn)
{
    Go("http://shop/login.html");
    OpenRecords(0);
    dialogs.Answers = {Answer::Yes};
    InDialog<frmEdit>([](frmEdit& editor) {
        EXPECT_EQ(editor.txtValue[0].Text(), "Anna B");
        editor.txtSession.Text = "Shop";
        editor.txtValue[0].Text = "berta";
        Press(editor.cmdPermanentOK);
    });
    Send("http://shop/bin/login.asp", "user=&pass=s%2Bc%26t");
    EXPECT_EQ(Shown(), (Lines{kViewNow, "dialog Edit Temporary Record Session"}));
    EXPECT_EQ(Program().SSTab1.Tab(), 1);
    EXPECT_EQ(Temporary(), Lines{});
    EXPECT_EQ(Rows(Program().lvwPermanent),
              Lines{"Shop | Form | http://shop/login.html | http://shop/bin/login.asp | user=berta&pass=s%20c%26t"});
}

}  // namespace velmora::test
