#include "editor/frmEdit.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

/// The whole way of a form: captured, kept, found again after a restart, played back.
class Road : public LogicHarness {
protected:
    static constexpr char kPage[] = "http://shop.example/Order.html";

    Road()
    {
        site[kPage] = {
            .forms = {{"search.cgi", {Text("q"), Submit()}, {}, "get"},
                      {"/bin/Order.asp",
                       {Text("name"), Password("pin"), Area("note"), One("color", {{"Blue", "b"}, {"Dark  Red", "r"}}),
                        Radio("size", "S", true), Radio("size", "L"), Box("gift", "yes"),
                        Many("tags", {{"A", "1"}, {"B", "2"}}), Hidden("token", "t0"), Submit("buy", "Buy now")}}}};
    }

    void FillInByHand()
    {
        Page().Enter("name", "Zoë & Söhne");
        Page().Enter("pin", "p-w%41=");
        Page().Enter("note", "two\r\nlines, 日本");
        Page().Choose("color", "Dark Red");
        Page().Tick("size", "L");
        Page().Tick("gift", "yes");
        Page().Choose("tags", "A");
        Page().Choose("tags", "B");
    }

    /// Records the order and moves it to the permanent records.
    void RecordOrder()
    {
        SwitchOn(Program().mnuAutoRecord);
        Go(kPage);
        FillInByHand();
        dialogs.Answers = {Answer::No};
        SubmitForm("buy", 1);
        OpenRecords(1, 1);
        Press(Program().cmdSave);
    }
};

TEST_F(Road, WhatWasRecordedIsSentAgain)
{
    RecordOrder();
    const std::string sent = Engine().Sent.back().postData;
    EXPECT_EQ(SessionFiles(), Lines{"shop_example_Order_html.xml"});

    Restart();
    SwitchOn(Program().mnuAutoRecord);
    Shown();
    OpenRecords(0, 1);
    dialogs.Answers = {Answer::Yes, Answer::Ok};
    Press(Program().cmdFill);
    Engine().Deliver();
    EXPECT_EQ(Shown(), (Lines{"[Address: http://shop.example/Order.html] Do you want to go to this form? (YesNo)",
                              "[Session=Session1] Do you want to auto fill-in this form (OkCancel)"}));
    EXPECT_EQ(Engine().Sent.back().url, "http://shop.example/bin/Order.asp");
    EXPECT_EQ(Engine().Sent.back().postData, sent);
    EXPECT_EQ(Program().ListView1.Count(), 0) << "a playback is not captured";
}

TEST_F(Road, AnEditedValueIsPlayed)
{
    RecordOrder();
    OpenRecords(0, 1);
    dialogs.Visits = {[](Window& window) {
        auto& editor = dynamic_cast<frmEdit&>(window);
        EXPECT_EQ(editor.lblName[3].Caption(), "color");
        EXPECT_EQ(editor.txtValue[3].Text(), "Dark Red") << "the record holds what the user saw";
        editor.txtSession.Text = "Order";
        editor.txtValue[0].Text = "Anna";
        editor.txtValue[3].Text = "Blue";
        Press(editor.cmdOK);
    }};
    Press(Program().cmdEdit);
    Restart();
    SwitchOff(Program().mnuPromptFill);
    Pick(Program().mnuManualClick);
    Go(kPage);
    EXPECT_EQ(Page().ControlNamed("name").value, "Anna");
    EXPECT_EQ(Page().ControlNamed("color").Value(), "b");
    SubmitForm("buy", 1);
    EXPECT_TRUE(Engine().Sent.back().postData.starts_with("name=Anna&"));
}

TEST_F(Road, ManyRecordsAndAnUglyPageDoNoHarm)
{
    for (int i = 0; i < 2000; ++i) {
        const std::string n = std::to_string(i);
        Keep({"Form", "r" + n, "http://h/" + n, "http://h/a.cgi", "x=" + n, "", ""});
    }
    Restart();
    SwitchOff(Program().mnuPromptFill);
    PageSketch page;
    for (int i = 0; i < 500; ++i) page.forms.push_back({"a.cgi", {Box("box", "1"), Text("x")}});
    page.forms.push_back({"a.cgi", {Text("x")}});
    site["http://h/1234"] = page;
    Go("http://h/1234");
    EXPECT_EQ(Journal(), Lines{"x := 1234"});
    EXPECT_EQ(Program().glngNoOfFormAction, 501);
}

}  // namespace velmora::test
