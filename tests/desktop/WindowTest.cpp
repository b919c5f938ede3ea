// The main window on the screen: where things stand, what reads in full, mouse and keyboard.
#include <sstream>

#include "platform/desktop/ControlSlot.h"
#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

class MainWindowOnScreen : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        SizeBecomes(870, 662);
    }

    /// Waits until the inside of the window has that size, in pixels.
    void SizeBecomes(int width, int height)
    {
        const std::string y = std::to_string(height - 25);
        PlaceBecomes("StatusBar1 0," + y + " " + std::to_string(width) + "x25");
    }
    void Resize(int width, int height)
    {
        const int menu = MainWindow().get_height() - Inside().get_height();
        MainWindow().set_default_size(width, height + menu);
        SizeBecomes(width, height);
    }
    Gtk::Widget& Inside() { return *Slot("StatusBar1").get_parent(); }

    /// What gives a control its place.
    Gtk::Widget& Slot(const std::string& control)
    {
        Gtk::Widget* widget = &Widget(control);
        while (!dynamic_cast<ControlSlot*>(widget)) widget = widget->get_parent();
        return *widget;
    }
    /// The place of a widget in pixels of the window's inside, below the menu.
    Gdk::Rectangle Bounds(Gtk::Widget& widget)
    {
        graphene_rect_t bounds;
        if (!gtk_widget_compute_bounds(widget.gobj(), Inside().gobj(), &bounds)) return {};
        return {static_cast<int>(bounds.origin.x), static_cast<int>(bounds.origin.y),
                static_cast<int>(bounds.size.width), static_cast<int>(bounds.size.height)};
    }
    /// "control x,y width x height".
    std::string Place(const std::string& control)
    {
        const Gdk::Rectangle place = Bounds(Slot(control));
        std::ostringstream text;
        text << control << " " << place.get_x() << "," << place.get_y() << " " << place.get_width() << "x"
             << place.get_height();
        return text.str();
    }
    void PlaceBecomes(const std::string& place)
    {
        RunUntil([&] { return Place(place.substr(0, place.find(' '))) == place; }, place);
    }
    /// Brings the record panel onto the screen.
    void ShowRecords()
    {
        Press("cmdHideRecord");
        PlaceBecomes("cmdFill 746,559 113x33");
        RunUntil([&] { return Widget("lvwPermanentColumn1").get_mapped(); }, "the header");
    }

    void AddRow(const std::string& name, const std::string& url)
    {
        frmBrowser::AddRecordItem(Form().lvwPermanent, {"Form", name, url, url + "in", "a=b", "", ""});
    }
    std::string Names()
    {
        std::string names;
        for (int i = 1; i <= Form().lvwPermanent.Count(); ++i) names += Form().lvwPermanent.Item(i).Text() + " ";
        return names;
    }
    bool IsSelected(int row) { return Form().lvwPermanent.SelectedItem() == &Form().lvwPermanent.Item(row); }
    static bool IsMarked(const Gtk::Label& cell)
    {
        const Gtk::Widget& row = *cell.get_parent()->get_parent();
        return (row.get_state_flags() & Gtk::StateFlags::SELECTED) == Gtk::StateFlags::SELECTED;
    }
    /// The label in the list that begins so; null while there is none.
    Gtk::Label* Cell(const std::string& beginning)
    {
        Gtk::Label* cell = nullptr;
        EachLabel(Widget("lvwPermanent"), [&](Gtk::Label& label) {
            if (label.get_text().raw().starts_with(beginning) && label.get_width() > 0) cell = &label;
        });
        return cell;
    }
    /// Whether a menu entry shows a check mark.
    bool IsMarked(const std::string& caption)
    {
        bool isMarked = false;
        Each(MainWindow(), [&](Gtk::Widget& entry) {
            if (std::string(G_OBJECT_TYPE_NAME(entry.gobj())) != "GtkModelButton") return;
            if (entry.get_property<Glib::ustring>("text").raw() == caption)
                isMarked = entry.get_property<bool>("active");
        });
        return isMarked;
    }
    /// The name of the control that has the keyboard focus.
    std::string Focus()
    {
        for (Gtk::Widget* widget = MainWindow().get_focus(); widget; widget = widget->get_parent()) {
            const std::string name = widget->get_name().raw();
            if (name.rfind("Gtk", 0) != 0 && name.find("velmora") == std::string::npos) return name;
        }
        return "nothing";
    }
    /// The same and, in the page, the text of the link that has it.
    std::string Stop()
    {
        if (!gtk_widget_is_focus(GTK_WIDGET(Engine().View()))) return Focus();
        const std::string link = Script("document.activeElement?.href ? ' ' + document.activeElement.textContent : ''");
        return "page" + link;
    }
    /// Where the key leads, from here until here again.
    std::vector<std::string> Round(const std::string& key)
    {
        std::vector<std::string> stops;
        std::string stop = Stop();
        do {
            stops.push_back(stop);
            PressKeys(MainWindow(), key);
            // A page that is being left lets go of its link first.
            const auto isBetween = [&] { return stop == stops.back() || (stop == "page" && stops.back() > stop); };
            RunUntil([&] { return (stop = Stop(), !isBetween()); }, "the stop after " + stops.back());
        } while (stop != stops.front() && stops.size() < 30);
        return stops;
    }
    void FocusBecomes(const std::string& control)
    {
        RunUntil([&] { return Focus() == control; }, "the focus in " + control + " instead of " + Focus());
    }
    /// Asks the main window to close, as a window manager does.
    void PressCloseBox()
    {
        gboolean isHandled = FALSE;
        g_signal_emit_by_name(MainWindow().gobj(), "close-request", &isHandled);
        EXPECT_TRUE(isHandled);
    }
};

TEST_F(MainWindowOnScreen, TheBrowserTakesTheRoomThatTheRecordPanelAndTheWindowGiveIt)
{
    const auto middle = [](Twips screen, int outer) {
        return std::to_string((static_cast<int>(screen / 15) - outer) / 2);
    };
    EXPECT_EQ(PlaceOnScreen(MainWindow()),
              middle(TheDesktop().ScreenWidth(), 878) + "," + middle(TheDesktop().ScreenHeight(), 716))
        << "the middle of the screen, with the fixed frame";
    PlaceBecomes("wbMyBrowser 8,80 851x557");
    ShowRecords();
    FocusBecomes("txtUrl");
    for (const char* place : {"txtUrl 56,48 802x25", "wbMyBrowser 8,80 851x346", "SSTab1 8,440 732x193",
                              "cmdEdit 746,440 113x33", "StatusBar1 0,637 870x25"}) {
        PlaceBecomes(place);
    }
    Resize(1200, 800);
    for (const char* place : {"txtUrl 56,48 1132x25", "wbMyBrowser 8,80 1181x484", "SSTab1 8,578 1062x193",
                              "cmdEdit 1076,578 113x33", "cmdFill 1076,697 113x33"}) {
        PlaceBecomes(place);
    }
    FocusBecomes("txtUrl");
    // Too small for its controls: nothing breaks, and what there is of the page ends at the status bar.
    Resize(200, 90);
    Resize(870, 662);
    PlaceBecomes("SSTab1 8,440 732x193");
}

TEST_F(MainWindowOnScreen, EveryCaptionReadsInFullAndTheButtonsStandAnEvenDistanceApart)
{
    ShowRecords();
    for (const char* button : {"cmdRecord", "cmdAutoClick", "cmdAutoHide"}) Press(button);
    Form().StatusBar1.Panels(2).Text = "99999 Pop-up is blocked";
    EachLabel(MainWindow(), [](Gtk::Label& label) {
        // Titles of columns that are scrolled out of sight have no place.
        EXPECT_FALSE(label.get_layout()->is_ellipsized()) << label.get_text();
        EXPECT_LE(label.get_layout()->get_pixel_logical_extents().get_width(), label.get_width()) << label.get_text();
    });
    int end = Bounds(Widget("cmdBack")).get_x() - 3;
    for (const char* name : {"cmdBack", "cmdPlayback", "cmdHideRecord", "cmdRecord", "cmdAutoHide", "cmdPrompt",
                             "cmdAutoClick", "cmdBookmark"}) {
        const Gdk::Rectangle drawn = Bounds(Widget(name));
        EXPECT_EQ(drawn.get_x() - end, 3) << name;
        end = drawn.get_x() + drawn.get_width();
    }
}

TEST_F(MainWindowOnScreen, TheMouseSortsChoosesTabsAndSelects)
{
    for (const char* name : {"pear", "Apple", "fig"}) AddRow(name, std::string("u:") + name);
    ShowRecords();
    // The start has sorted once, so that the first click gives the other direction.
    ClickOn(Widget("lvwPermanentColumn1"));
    RunUntil([&] { return Names() == "Apple fig pear "; }, "the sorted list");
    ClickOn(Widget("lvwPermanentColumn3"));
    RunUntil([&] { return Names() == "pear fig Apple "; }, "the list sorted down");
    EXPECT_EQ(Form().lvwPermanent.SelectedItem(), nullptr);
    RunUntil([&] { return Cell("pear"); }, "the row pear");
    ClickOn(*Cell("pear"));
    RunUntil([&] { return IsSelected(1); }, "a selected row");
    ClickOn(Widget("lvwPermanentColumn3"));
    RunUntil([&] { return Names() == "Apple fig pear " && IsSelected(3); }, "the row chosen at its new place");
    EXPECT_TRUE(IsMarked(*Cell("pear")) && !IsMarked(*Cell("Apple")));

    ClickOn(Widget("SSTab1Tab1"));
    RunUntil([&] { return Widget("ListView1Column1").get_mapped(); }, "the temporary records");
    EXPECT_TRUE(Widget("cmdSave").is_sensitive());
    EXPECT_FALSE(Widget("cmdFill").is_sensitive());
    EXPECT_FALSE(Widget("lvwPermanent").get_mapped());
    ClickOn(Widget("ListView1Column1"));
    EXPECT_FALSE(Form().ListView1.Sorted());
}

TEST_F(MainWindowOnScreen, TheKeyboardGoesAllTheWayRound)
{
    server_.Page("/links", "<a href='1'>one</a> <a href='2'>two</a>");
    server_.Page("/empty", "");
    ShowRecords();
    Press("cmdAutoHide");
    // cmdSave is disabled and ListView1 out of sight: the Tab key leaves both out. The list is empty.
    const std::vector<std::string> buttons{"cmdBack",   "cmdPlayback",  "cmdRecord", "cmdHideRecord", "cmdAutoHide",
                                           "cmdPrompt", "cmdAutoClick", "txtUrl",    "SSTab1Tab0",    "lvwPermanent",
                                           "cmdEdit",   "cmdDelete",    "cmdFill",   "cmdBookmark"};
    for (const std::vector<std::string>& inPage :
         {std::vector<std::string>{"page", "page one", "page two"}, {"page"}}) {
        Go(server_.Url(inPage.size() > 1 ? "/links" : "/empty"));
        Form().SSTab1.Tab = 0;
        Widget("cmdBack").grab_focus();
        std::vector<std::string> forward = buttons;
        forward.insert(forward.end(), inPage.begin(), inPage.end());
        EXPECT_EQ(Round("Tab"), forward);
        std::vector<std::string> backward{"cmdBack", "page"};
        backward.insert(backward.end(), inPage.rbegin(), inPage.rend() - 1);
        backward.insert(backward.end(), buttons.rbegin(), buttons.rend() - 1);
        EXPECT_EQ(Round("shift+Tab"), backward);
    }
}

TEST_F(MainWindowOnScreen, TheKeyboardReachesAndPressesEverything)
{
    AddRow("pear", "u:1");
    AddRow("fig", "u:2");
    ShowRecords();
    Widget("txtUrl").grab_focus();
    // Only the first row leads to the titles, also when no row is selected.
    PressKeys(MainWindow(), "Tab Tab ctrl+Down Up");
    // A newer toolkit chooses the row that has the keyboard before it goes on.
    RunUntil([&] { return IsSelected(1) || IsSelected(2); }, "a row chosen by key");
    PressKeys(MainWindow(), "ctrl+shift+a ctrl+space Down");
    RunUntil([&] { return IsSelected(2); }, "the next row, none before it");
    // From the first row Up leads to the titles.
    const int before = Form().lvwPermanent.SortOrder();
    PressKeys(MainWindow(), "Home Up Right space");
    RunUntil([&] { return Form().lvwPermanent.SortKey() == 1; }, "the list sorted by key");
    EXPECT_NE(Form().lvwPermanent.SortOrder(), before);
    PressKeys(MainWindow(), "Down");
    RunUntil([&] { return Focus() == "lvwPermanent"; }, "the focus back in the rows");
    Widget("SSTab1Tab0").grab_focus();
    PressKeys(MainWindow(), "Right space");
    RunUntil([&] { return Form().SSTab1.Tab() == 1; }, "a tab chosen by key");
    PressKeys(MainWindow(), "shift+Tab");
    FocusBecomes("txtUrl");
    PressKeys(MainWindow(), "Tab");
    FocusBecomes("SSTab1Tab1");
    // What is disabled under the user's fingers keeps the place, does nothing, and has the focus back later.
    Widget("cmdSave").grab_focus();
    Form().SSTab1.Tab = 0;
    PressKeys(MainWindow(), "space Tab");
    FocusBecomes("cmdFill");
    Form().cmdFill.Enabled = false;
    Form().cmdFill.Enabled = true;
    FocusBecomes("cmdFill");
    Widget("txtUrl").grab_focus();
    const std::size_t pages = Completed().size();
    PressKeys(MainWindow(), "ctrl+a x Return");
    RunUntil([&] { return Form().txtUrl.Text() == "x"; }, "the typed address");
    EXPECT_EQ(Status(), "");
    EXPECT_EQ(Completed().size(), pages);
    PressKeys(MainWindow(), "alt+r Return");
    RunUntil([&] { return IsMarked("Auto Record"); }, "the mark at a menu entry that a key has chosen");
    EXPECT_TRUE(Form().mnuAutoRecord.Checked());
    FocusBecomes("txtUrl");
    PressKeys(MainWindow(), "alt+p");
    RunUntil([&] { return IsMarked(Form().mnuPromptFill.Caption); }, "the mark that was there from the start");
}

TEST_F(MainWindowOnScreen, TheCloseBoxIsExitWhateverIsOpen)
{
    frmBrowser::AddRecordItem(Form().ListView1, {"Form", "not kept", "u", "u", "a=b", "", ""});
    const std::string question = "You have temporary record not saved as permanent yet, do you really want to exit?";
    Expect({.text = "Yes?", .button = "Yes", .before = [this] { PressCloseBox(); }});
    Expect({.text = question, .button = "No"});
    EXPECT_EQ(TheDesktop().MsgBox("Yes?", Buttons::YesNo, Icon::None, {}), Answer::No) << "the safe answer";
    RunUntil([this] { return AllAnswered(); }, "the exit after the question");

    Expect({.text = question, .button = "No"});
    const auto open = [this] {
        Form().mnuHome.Click.Raise();
        EXPECT_EQ(Asked().size(), 2U) << "the dialog's handler comes to its end first";
    };
    InDialog("Default Home Page Setup", open, [this](Gtk::Window&) { PressCloseBox(); });
    RunUntil([this] { return AllAnswered(); }, "the exit after the dialog");

    Expect({.text = question, .button = "No", .before = [this] { PressCloseBox(); }});
    MainWindow().close();
    EXPECT_FALSE(TheDesktop().hasEnded);
    Expect({.text = question, .button = "Yes"});
    MainWindow().close();
    EXPECT_TRUE(TheDesktop().hasEnded);
    EXPECT_EQ(Asked().size(), 5U) << "one question at a time";
}

TEST_F(MainWindowOnScreen, TheTickerTicks)
{
    Form().Timer1.Interval = 20;
    Form().Timer1.Enabled = true;
    RunUntil([&] { return TextOf("StatusBar1Panel1") == "......"; }, "three ticks");
    Form().Timer1.Enabled = false;
}

TEST_F(MainWindowOnScreen, BadTextsArePlainTextOnOneLine)
{
    const std::string bad = "<b>a & b</b>\r\n\t\u202Eright\u0301\u0301 " + std::string(100000, 'x');
    AddRow(bad, bad);
    ShowRecords();
    RunUntil([&] { return Cell("<b>a & b</b>"); }, "the row");
    const std::string shown = Cell("<b>")->get_text().raw();
    EXPECT_EQ(shown.find_first_of("\r\n\t"), std::string::npos);
    Form().StatusBar1.Panels(1).Text = bad;
    EXPECT_EQ(TextOf("StatusBar1Panel1"), shown);
    SelectRow("lvwPermanent", 1);
    Expect({.text = "Are you sure to delete this permanent record session?", .button = "No"});
    Press("cmdDelete");
    EXPECT_EQ(Asked().back().substr(0, 12), "<b>a & b</b>");

    const std::string browser = Place("wbMyBrowser");
    for (const std::string& text : {bad, std::string("next"), bad}) TheDesktop().Tell(text);
    EXPECT_EQ(TextOf("lblNotice"), shown);
    RunUntil([&] { return Place("wbMyBrowser") != browser; }, "the room for the line");
    EXPECT_EQ(MainWindow().get_width(), 870);
    Press("cmdNoticeClose");
    EXPECT_EQ(TextOf("lblNotice"), "next");
    Press("cmdNoticeClose");
    PlaceBecomes(browser);
}

}  // namespace
}  // namespace velmora::test
