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
        return mode + ", " + Program().cmdAutoClick.Caption();
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
    EXPECT_FALSE(Program().SSTab1.Visible() || Program().cmdEdit.Visible());
    EXPECT_FALSE(Program().cmdSave.Enabled());
    EXPECT_TRUE(Program().gbRecordArmed);
    EXPECT_EQ(Program().gstrCurMode, "Playback");
    EXPECT_EQ(Program().ListView1.ColumnHeaders().size(), 7u);
}

TEST_F(Shell, EventsInTheMiddleOfStartUpAreSafe)
{
    Keep({"Form", "a", "about:blank", "x", "a=1", "", ""});
    Restart();
    EXPECT_EQ(Shown(), Lines{}) << "a record of the blank page is not played before the first Go";
    EXPECT_EQ(Engine().Visited, (Lines{"about:blank", "velmora://guide/"}));
}

TEST_F(Shell, SwitchesFlipMarkAndCaption)
{
    auto& p = Program();
    const struct {
        MenuItem& item;
        CommandButton& button;
        std::string on;
        std::string off;
    } table[] = {
        {p.mnuAutoRecord, p.cmdRecord, "Auto Record On", "Auto Record Off"},
        {p.mnuPromptFill, p.cmdPrompt, "Prompt User is On", "Prompt User is Off"},
        {p.mnuAutoHide, p.cmdAutoHide, "Auto Hide is On", "Auto Hide is Off"},
        {p.mnuHideRecord, p.cmdHideRecord, "Show Record", "Hide Record"},
    };
    for (const auto& [item, button, on, off] : table) {
        const bool before = item.Checked();
        EXPECT_EQ(button.Caption(), before ? on : off);
        Press(button);
        EXPECT_EQ(item.Checked(), !before) << item.Name;
        EXPECT_EQ(button.Caption(), before ? off : on);
        Pick(item);
        EXPECT_EQ(item.Checked(), before) << item.Name;
        EXPECT_EQ(button.Caption(), before ? on : off);
    }
}

TEST_F(Shell, FillModeMovesOnFromState)
{
    const std::string automatic = "Auto, Auto Click is On";
    const std::string manual = "Manual, Auto Click is Off";
    const std::string none = "None, Auto Click is Off";
    EXPECT_EQ(FillMode(), automatic);
    const struct {
        MenuItem& item;
        std::string after;
    } table[] = {
        {Program().mnuAutoClick, manual},      {Program().mnuAutoClick, automatic}, {Program().mnuManualClick, manual},
        {Program().mnuManualClick, automatic}, {Program().mnuNoFill, none},         {Program().mnuAutoClick, automatic},
        {Program().mnuNoFill, none},           {Program().mnuManualClick, manual},  {Program().mnuNoFill, none},
        {Program().mnuNoFill, manual},
    };
    for (const auto& [item, after] : table) {
        Pick(item);
        EXPECT_EQ(FillMode(), after) << item.Name;
    }
    Press(Program().cmdAutoClick);
    EXPECT_EQ(FillMode(), automatic);
}

TEST_F(Shell, LayoutFollowsTheWindow)
{
    auto& p = Program();
    const float hiddenHeight = p.wbMyBrowser.Height();
    OpenRecords(0);
    EXPECT_EQ(hiddenHeight - p.wbMyBrowser.Height(), 3194);
    Resize(13050, 9930);
    const auto place = [](const Control& c) { return std::vector<float>{c.Left(), c.Top(), c.Width(), c.Height()}; };
    EXPECT_EQ(place(p.txtUrl), (std::vector<float>{840, 720, 12035, 375}));
    EXPECT_EQ(place(p.wbMyBrowser), (std::vector<float>{120, 1200, 12770, 5195}));
    EXPECT_EQ(place(p.SSTab1), (std::vector<float>{120, 6595, 10975, 2895}));
    EXPECT_EQ(place(p.lvwPermanent), (std::vector<float>{120, 360, 10725, 2535}));
    EXPECT_EQ(place(p.ListView1), place(p.lvwPermanent));
    EXPECT_EQ(place(p.cmdEdit), (std::vector<float>{11195, 6595, 1695, 495}));
    EXPECT_EQ(place(p.cmdDelete), (std::vector<float>{11195, 7190, 1695, 495}));
    EXPECT_EQ(place(p.cmdSave), (std::vector<float>{11195, 7785, 1695, 495}));
    EXPECT_EQ(place(p.cmdFill), (std::vector<float>{11195, 8380, 1695, 495}));
    EXPECT_EQ(p.StatusBar1.Panels(1).Width(), 11070);
    EXPECT_EQ(p.StatusBar1.Panels(2).Width(), 2100);
}

TEST_F(Shell, ALayoutPassEndsAtASizeThatIsRefused)
{
    auto& p = Program();
    OpenRecords(0);
    Resize(13050, 9930);
    Resize(20000, 3000);
    EXPECT_EQ(p.wbMyBrowser.Width(), 20120 - 400);
    EXPECT_EQ(p.wbMyBrowser.Height(), 5195);
    EXPECT_EQ(p.SSTab1.Width(), 10975);
    p.ScaleWidth = 0;
    p.ScaleHeight = 0;
    p.Width = 5000;
    p.Resize.Raise();
    EXPECT_EQ(p.wbMyBrowser.Width(), 20120 - 400) << "minimised";
    Resize(13050, 9930);
    EXPECT_EQ(p.SSTab1.Top(), 6595);
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
    for (auto* button : {&p.cmdBack, &p.cmdPlayback}) {
        OpenRecords(0);
        Press(*button);
        EXPECT_TRUE(p.mnuHideRecord.Checked()) << button->Name;
        Press(*button);
        EXPECT_TRUE(p.mnuHideRecord.Checked()) << button->Name;
    }
    OpenRecords(0);
    Pick(p.mnuWebsite);
    EXPECT_TRUE(p.mnuHideRecord.Checked());
    SwitchOff(p.mnuAutoHide);
    OpenRecords(0);
    Press(p.cmdPlayback);
    EXPECT_FALSE(p.mnuHideRecord.Checked());
}

TEST_F(Shell, TickerRunsWhileAPageLoads)
{
    auto& p = Program();
    EXPECT_FALSE(p.Timer1.Enabled());
    BeforeNavigate2Event event{p.wbMyBrowser, "http://h/", 0, "", "", ""};
    p.wbMyBrowser.BeforeNavigate2.Raise(event);
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
    for (const auto& [before, after] : {std::pair<std::string, std::string>{"", ".."},
                                        {"x" + std::string(18, '.'), "x" + std::string(20, '.')},
                                        {"x" + std::string(20, '.'), "x."},
                                        {"Record session is modified!", "Record session is modified!.."}}) {
        p.StatusBar1.Panels(1).Text = before;
        p.Timer1.Tick.Raise();
        EXPECT_EQ(Status(), after);
    }
}

TEST_F(Shell, HelpHasTheAboutBox)
{
    dialogs.Visits = {[](Window& about) { EXPECT_EQ(about.ScaleWidth(), 5640); }};
    Pick(Program().mnuAbout);
    EXPECT_EQ(Shown(), Lines{"dialog About Velmora"});
}

TEST_F(Shell, BackFollowsTheHistory)
{
    auto& p = Program();
    EXPECT_TRUE(p.cmdBack.Enabled());
    p.wbMyBrowser.CommandStateChange.Raise(1, false);
    EXPECT_TRUE(p.cmdBack.Enabled());
    p.wbMyBrowser.CommandStateChange.Raise(2, false);
    EXPECT_FALSE(p.cmdBack.Enabled());
}

}  // namespace velmora::test
