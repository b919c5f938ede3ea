#include "tests/support/LogicHarness.h"

namespace velmora::test {

class Shell : public LogicHarness {
protected:
    /// The fill mode by its menu marks, and the button's words.
    std::string FillMode()
    {
        std::string mode;
        if (Program().mnuManualClick.Checked()) mode += "Manual";
        if (Program().mnuAutoClick.Checked()) mode += "Auto";
        if (Program().mnuNoFill.Checked()) mode += "None";
        const std::string& caption = Program().cmdAutoClick.Caption();
        return mode + ", " + caption.substr(std::string("Auto Click is ").size());
    }
    void Resize(Twips width, Twips height)
    {
        Program().SetInnerSize(width, height);
        Program().Resize.Raise();
    }
};

TEST_F(Shell, StartsOnTheHomePageWithThePanelHidden)
{
    EXPECT_EQ(Engine().Visited, (Lines{"about:blank", "velmora://guide/"}));
    EXPECT_EQ(Program().Caption(), "Velmora v1.1");
    EXPECT_EQ(Program().cmdHideRecord.Caption(), "Show Record");
    EXPECT_FALSE(Program().SSTab1.Visible() || Program().cmdEdit.Visible() || Program().cmdSave.Enabled());
    for (const ListView* list : {&Program().lvwPermanent, &Program().ListView1}) {
        std::string columns;
        for (const auto& column : list->ColumnHeaders()) columns += column.Caption + "|";
        EXPECT_EQ(columns,
                  "Record Name|Record Type|Destination Address|Form Action / Originating Address|Post Data|Header|"
                  "Target Frame|");
    }
}

TEST_F(Shell, TheMenuHoldsWhatItSays)
{
    Lines menu;
    for (const MenuItem* top : Program().Menu) {
        menu.push_back(top->Caption + ":");
        for (const MenuItem* item : top->Children) menu.back() += " " + item->Name + (item->Checked() ? "*" : "");
    }
    EXPECT_EQ(menu, (Lines{"File: mnuProxy mnuHome mnuSep1 mnuExit", "View: mnuHideRecord* mnuAutoHide*",
                           "Playback: mnuPromptFill* mnuPlaybackSep1 mnuManualClick mnuAutoClick* mnuNoFill",
                           "Record: mnuAutoRecord", "Popup: mnuBlock", "Help: mnuWebsite mnuAbout"}));
}

TEST_F(Shell, SwitchesFlipMarkAndCaption)
{
    auto& p = Program();
    const struct {
        MenuItem& item;
        CommandButton& button;
        bool atStart;
        std::string on;
        std::string off;
    } table[] = {
        {p.mnuAutoRecord, p.cmdRecord, false, "Auto Record On", "Auto Record Off"},
        {p.mnuPromptFill, p.cmdPrompt, true, "Prompt User is On", "Prompt User is Off"},
        {p.mnuAutoHide, p.cmdAutoHide, true, "Auto Hide is On", "Auto Hide is Off"},
        {p.mnuHideRecord, p.cmdHideRecord, true, "Show Record", "Hide Record"},
    };
    for (const auto& [item, button, atStart, on, off] : table) {
        EXPECT_EQ(button.Caption(), atStart ? on : off);
        Press(button);
        EXPECT_EQ(item.Checked(), !atStart) << item.Name;
        EXPECT_EQ(button.Caption(), atStart ? off : on);
        Pick(item);
        EXPECT_EQ(item.Checked(), atStart) << item.Name;
        EXPECT_EQ(button.Caption(), atStart ? on : off);
    }
}

TEST_F(Shell, FillModeMovesOnFromState)
{
    auto& p = Program();
    // The marks and the button's words after each click.
    const std::pair<MenuItem&, std::string> table[] = {
        {p.mnuAutoClick, "Manual, Off"}, {p.mnuAutoClick, "Auto, On"},      {p.mnuManualClick, "Manual, Off"},
        {p.mnuManualClick, "Auto, On"},  {p.mnuNoFill, "None, Off"},        {p.mnuAutoClick, "Auto, On"},
        {p.mnuNoFill, "None, Off"},      {p.mnuManualClick, "Manual, Off"}, {p.mnuNoFill, "None, Off"},
        {p.mnuNoFill, "Manual, Off"},
    };
    for (const auto& [item, after] : table) {
        Pick(item);
        EXPECT_EQ(FillMode(), after) << item.Name;
    }
    Press(p.cmdAutoClick);
    EXPECT_EQ(FillMode(), "Auto, On");
}

TEST_F(Shell, LayoutFollowsTheWindowUntilASizeIsRefused)
{
    auto& p = Program();
    const float hiddenHeight = p.wbMyBrowser.Height();
    OpenRecords(0);
    EXPECT_EQ(hiddenHeight - p.wbMyBrowser.Height(), 3194);
    p.StatusBar1.Panels(2).Width = 1;
    Resize(13051.5F, 9930);
    const auto place = [](const Control& c) { return std::vector<float>{c.Left(), c.Top(), c.Width(), c.Height()}; };
    const std::pair<Control&, std::vector<float>> table[] = {
        {p.txtUrl, {840, 720, 12036, 375}},         {p.wbMyBrowser, {120, 1200, 12771.5F, 5195}},
        {p.SSTab1, {120, 6595, 10976.5F, 2895}},    {p.lvwPermanent, {120, 360, 10726.5F, 2535}},
        {p.ListView1, {120, 360, 10726.5F, 2535}},  {p.cmdEdit, {11196.5F, 6595, 1695, 495}},
        {p.cmdDelete, {11196.5F, 7190, 1695, 495}}, {p.cmdSave, {11196.5F, 7785, 1695, 495}},
        {p.cmdFill, {11196.5F, 8380, 1695, 495}}};
    for (const auto& [control, expected] : table) EXPECT_EQ(place(control), expected) << control.Name;
    EXPECT_EQ(p.StatusBar1.Panels(1).Width(), 11071.5F);
    EXPECT_EQ(p.StatusBar1.Panels(2).Width(), 2100);

    Resize(20000, 3000);
    EXPECT_EQ(p.wbMyBrowser.Height(), 5195) << "a height below zero is refused";
    EXPECT_EQ(p.SSTab1.Width(), 10976.5F);
    p.ScaleWidth = 0;
    p.ScaleHeight = 0;
    p.Width = 5000;
    p.Resize.Raise();
    EXPECT_EQ(p.wbMyBrowser.Width(), 20120 - 400) << "minimised";
}

TEST_F(Shell, ALayoutPassBringsTheFocusToTheAddress)
{
    int granted = 0;
    Program().txtUrl.FocusRequested.Add([&] { ++granted; });
    Pick(Program().mnuHideRecord);
    EXPECT_EQ(granted, 1);
    Program().Visible = false;
    Program().StatusBar1.Panels(1).Width = 1;
    Resize(9000, 9000);
    EXPECT_EQ(granted, 1);
    EXPECT_EQ(Program().StatusBar1.Panels(1).Width(), 1) << "what follows the focus waits for a later pass";
    EXPECT_EQ(Program().SSTab1.Width(), 9120 - 2195);
}

TEST_F(Shell, AutoHideHidesAndNeverShows)
{
    auto& p = Program();
    p.txtUrl.Text = "http://go/";
    Engine().Visited.clear();
    for (const auto* click : {&p.cmdBack.Click, &p.cmdPlayback.Click, &p.mnuWebsite.Click}) {
        OpenRecords(0);
        click->Raise();
        EXPECT_TRUE(p.mnuHideRecord.Checked());
        click->Raise();
        EXPECT_TRUE(p.mnuHideRecord.Checked());
    }
    EXPECT_EQ(Engine().Visited,
              (Lines{"back", "back", "http://go/", "http://go/", "velmora://guide/", "velmora://guide/"}));
    Switch(p.mnuAutoHide, false);
    OpenRecords(0);
    Press(p.cmdPlayback);
    EXPECT_FALSE(p.mnuHideRecord.Checked());
}

TEST_F(Shell, TickerRunsWhileAPageLoads)
{
    auto& p = Program();
    EXPECT_FALSE(p.Timer1.Enabled());
    Send("http://h/");
    EXPECT_TRUE(p.Timer1.Enabled());
    EXPECT_EQ(p.Timer1.Interval(), 1000);
    EXPECT_FALSE(p.cmdBookmark.Enabled());
    std::string tails;
    for (int i = 0; i < 11; ++i) {
        p.Timer1.Tick.Raise();
        tails += std::to_string(Status().size() - std::string("Going to http://h/").size()) + " ";
    }
    EXPECT_EQ(tails, "5 7 9 11 13 15 17 19 21 1 3 ");
    p.wbMyBrowser.DocumentComplete.Raise(p.wbMyBrowser, "http://h/");
    EXPECT_FALSE(p.Timer1.Enabled());
    EXPECT_EQ(Status(), "");
    Send("http://h/download");
    p.wbMyBrowser.NavigationEnded.Raise();
    EXPECT_EQ(Status(), "");
    EXPECT_TRUE(p.cmdBookmark.Enabled() && !p.Timer1.Enabled()) << "the page that stands is the page again";
    for (const std::string before : {"", "Record session is modified!"}) {
        p.StatusBar1.Panels(1).Text = before;
        p.Timer1.Tick.Raise();
        EXPECT_EQ(Status(), before + "..");
    }
}

TEST_F(Shell, BackFollowsTheHistoryAndHelpHasAnAboutBox)
{
    auto& p = Program();
    EXPECT_TRUE(p.cmdBack.Enabled());
    p.wbMyBrowser.CommandStateChange.Raise(1, false);
    EXPECT_TRUE(p.cmdBack.Enabled());
    p.wbMyBrowser.CommandStateChange.Raise(2, false);
    EXPECT_FALSE(p.cmdBack.Enabled());
    Pick(p.mnuAbout);
    EXPECT_EQ(Shown(), Lines{"dialog About Velmora, not centred"});
}

}  // namespace velmora::test
