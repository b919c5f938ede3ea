// The main window on the screen: where things stand, what reads in full, mouse and keyboard.
#include <gmock/gmock.h>
#include <gtkmm/button.h>
#include <gtkmm/columnview.h>

#include <sstream>

#include "platform/desktop/ControlSlot.h"
#include "tests/desktop/Hands.h"
#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::ElementsAre;

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
        RunUntil(
            [&] {
                const auto bar = Place("StatusBar1");
                return bar.get_width() == width && bar.get_y() + bar.get_height() == height;
            },
            "the window's size");
    }
    void Resize(int width, int height)
    {
        MainWindow().set_default_size(width, height + Menu());
        SizeBecomes(width, height);
    }
    int Menu() { return MainWindow().get_height() - Inside().get_height(); }
    Gtk::Widget& Inside() { return *Slot("StatusBar1").get_parent(); }

    /// What gives a control its place.
    Gtk::Widget& Slot(const std::string& control)
    {
        Gtk::Widget* widget = &Widget(control);
        while (!dynamic_cast<ControlSlot*>(widget)) widget = widget->get_parent();
        return *widget;
    }
    /// The place of a control in pixels of the window's inside, below the menu.
    Gdk::Rectangle Place(const std::string& control) { return Bounds(Slot(control)); }
    Gdk::Rectangle Bounds(Gtk::Widget& widget)
    {
        graphene_rect_t bounds;
        if (!gtk_widget_compute_bounds(widget.gobj(), Inside().gobj(), &bounds)) return {};
        return {static_cast<int>(bounds.origin.x), static_cast<int>(bounds.origin.y),
                static_cast<int>(bounds.size.width), static_cast<int>(bounds.size.height)};
    }
    std::string PlaceText(const std::string& control)
    {
        const Gdk::Rectangle place = Place(control);
        std::ostringstream text;
        text << control << " " << place.get_x() << "," << place.get_y() << " " << place.get_width() << "x"
             << place.get_height();
        return text.str();
    }
    /// The places of all that the layout moves.
    std::vector<std::string> Places()
    {
        std::vector<std::string> places;
        for (const char* name : {"txtUrl", "wbMyBrowser", "SSTab1", "cmdEdit", "cmdFill", "StatusBar1"}) {
            places.push_back(PlaceText(name));
        }
        return places;
    }

    static RecordItem Record(const std::string& name, const std::string& url)
    {
        return {"Form", name, url, url + "in", "a=b", "", ""};
    }
    void Keep(const std::string& name) { frmBrowser::AddRecordItem(Form().lvwPermanent, Record(name, "u:" + name)); }
    std::vector<std::string> Names()
    {
        std::vector<std::string> names;
        for (int i = 1; i <= Form().lvwPermanent.Count(); ++i) names.push_back(Form().lvwPermanent.Item(i).Text());
        return names;
    }
    /// Whether a menu entry shows a check mark.
    bool IsMarked(const std::string& caption)
    {
        bool isMarked = false;
        const auto look = [&](auto&& self, GtkWidget* widget) -> void {
            if (std::string(G_OBJECT_TYPE_NAME(widget)) == "GtkModelButton") {
                char* text = nullptr;
                gboolean active = FALSE;
                g_object_get(widget, "text", &text, "active", &active, nullptr);
                if (text == caption) isMarked = active;
                g_free(text);
            }
            for (GtkWidget* child = gtk_widget_get_first_child(widget); child;
                 child = gtk_widget_get_next_sibling(child)) {
                self(self, child);
            }
        };
        look(look, GTK_WIDGET(MainWindow().gobj()));
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
};

TEST_F(MainWindowOnScreen, TheBrowserTakesTheRoomThatTheRecordPanelAndTheWindowGiveIt)
{
    const auto middle = [](Twips screen, int outer) {
        return std::to_string((static_cast<int>(screen / 15) - outer) / 2);
    };
    EXPECT_EQ(PlaceOnScreen(MainWindow()),
              middle(TheDesktop().ScreenWidth(), 878) + "," + middle(TheDesktop().ScreenHeight(), 716))
        << "the middle of the screen, with the fixed frame";
    EXPECT_EQ(PlaceText("wbMyBrowser"), "wbMyBrowser 8,80 851x557");
    Press("cmdHideRecord");
    FocusBecomes("txtUrl");
    RunUntil([&] { return Place("wbMyBrowser").get_height() < 400; }, "the panel");
    EXPECT_THAT(Places(), ElementsAre("txtUrl 56,48 802x25", "wbMyBrowser 8,80 851x346", "SSTab1 8,440 732x193",
                                      "cmdEdit 746,440 113x33", "cmdFill 746,559 113x33", "StatusBar1 0,637 870x25"));
    Resize(1200, 800);
    EXPECT_THAT(Places(),
                ElementsAre("txtUrl 56,48 1132x25", "wbMyBrowser 8,80 1181x484", "SSTab1 8,578 1062x193",
                            "cmdEdit 1076,578 113x33", "cmdFill 1076,697 113x33", "StatusBar1 0,775 1200x25"));
    FocusBecomes("txtUrl");
    // Too small for its controls: nothing breaks, and what there is of the page ends at the status bar.
    Resize(200, 90);
    EXPECT_EQ(PlaceText("StatusBar1"), "StatusBar1 0,65 200x25");
    Resize(870, 662);
    EXPECT_EQ(PlaceText("SSTab1"), "SSTab1 8,440 732x193");
}

TEST_F(MainWindowOnScreen, EveryCaptionReadsInFullAndTheButtonsStandAnEvenDistanceApart)
{
    Press("cmdHideRecord");
    RunUntil([&] { return Widget("cmdEdit").get_mapped(); }, "the panel");
    Press("cmdRecord");
    Press("cmdAutoClick");
    Press("cmdAutoHide");
    Form().StatusBar1.Panels(2).Text = "99999 Pop-up is blocked";
    EachLabel(MainWindow(), [](Gtk::Label& label) {
        // Titles of columns that are scrolled out of sight have no place.
        EXPECT_FALSE(label.get_layout()->is_ellipsized()) << label.get_text();
        EXPECT_LE(label.get_layout()->get_pixel_logical_extents().get_width(), label.get_width()) << label.get_text();
    });
    std::vector<int> gaps;
    int end = 0;
    for (const char* name : {"cmdBack", "cmdPlayback", "cmdHideRecord", "cmdRecord", "cmdAutoHide", "cmdPrompt",
                             "cmdAutoClick", "cmdBookmark"}) {
        const Gdk::Rectangle drawn = Bounds(Widget(name));
        if (end > 0) gaps.push_back(drawn.get_x() - end);
        end = drawn.get_x() + drawn.get_width();
    }
    EXPECT_THAT(gaps, testing::Each(3));
}

TEST_F(MainWindowOnScreen, TheMouseSortsChoosesTabsAndSelects)
{
    for (const char* name : {"pear", "Apple", "fig"}) Keep(name);
    Press("cmdHideRecord");
    RunUntil([&] { return Widget("lvwPermanentColumn1").get_mapped(); }, "the header");
    // The start has sorted once, so that the first click gives the other direction.
    ClickOn(Widget("lvwPermanentColumn1"));
    RunUntil([&] { return Names() == std::vector<std::string>{"Apple", "fig", "pear"}; }, "the sorted list");
    ClickOn(Widget("lvwPermanentColumn3"));
    RunUntil([&] { return Names() == std::vector<std::string>{"pear", "fig", "Apple"}; }, "the list sorted down");
    EXPECT_EQ(Form().lvwPermanent.SelectedItem(), nullptr);
    Gtk::Label* fig = nullptr;
    RunUntil(
        [&] {
            EachLabel(Widget("lvwPermanent"), [&](Gtk::Label& label) {
                if (label.get_text() == "fig" && label.get_width() > 0) fig = &label;
            });
            return fig != nullptr;
        },
        "the row fig");
    ClickOn(*fig);
    RunUntil([&] { return Form().lvwPermanent.SelectedItem() == &Form().lvwPermanent.Item(2); }, "a selected row");

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
    Press("cmdHideRecord");
    Press("cmdAutoHide");
    RunUntil([&] { return Widget("cmdFill").get_mapped(); }, "the panel");
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
    Keep("pear");
    Keep("fig");
    Press("cmdHideRecord");
    RunUntil([&] { return Widget("cmdFill").get_mapped(); }, "the panel");

    Widget("txtUrl").grab_focus();
    // Only the first row leads to the titles, also when no row is selected.
    PressKeys(MainWindow(), "Tab Tab ctrl+Down Up");
    const ListView& list = Form().lvwPermanent;
    RunUntil([&] { return list.SelectedItem() == &Form().lvwPermanent.Item(1); }, "a row chosen by key");
    PressKeys(MainWindow(), "ctrl+shift+a ctrl+space Down");
    RunUntil([&] { return list.SelectedItem() == &Form().lvwPermanent.Item(2); }, "the next row, none before it");
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
    EXPECT_EQ(Form().StatusBar1.Panels(1).Text(), "");
    EXPECT_EQ(Completed().size(), pages);
    PressKeys(MainWindow(), "alt+r Return");
    RunUntil([&] { return IsMarked("Auto Record"); }, "the mark at a menu entry that a key has chosen");
    EXPECT_TRUE(Form().mnuAutoRecord.Checked());
    FocusBecomes("txtUrl");
}

TEST_F(MainWindowOnScreen, TheCloseBoxIsExitWhateverIsOpen)
{
    frmBrowser::AddRecordItem(Form().ListView1, Record("not kept", "u"));
    const std::string question = "You have temporary record not saved as permanent yet, do you really want to exit?";
    Expect({.text = "Yes?", .button = "Yes", .before = [this] { PressCloseBox(MainWindow()); }});
    Expect({.text = question, .button = "No"});
    EXPECT_EQ(TheDesktop().MsgBox("Yes?", Buttons::YesNo, Icon::None, {}), Answer::No) << "the safe answer";
    RunUntil([this] { return AllAnswered(); }, "the exit after the question");

    Expect({.text = question, .button = "No"});
    const sigc::connection watch = Glib::signal_timeout().connect(
        [this] {
            const bool isThere = OpenWindow("Default Home Page Setup");
            if (isThere) PressCloseBox(MainWindow());
            return !isThere;
        },
        10);
    Form().mnuHome.Click.Raise();
    EXPECT_EQ(Asked().size(), 2U) << "the dialog's handler comes to its end first";
    RunUntil([this] { return AllAnswered(); }, "the exit after the dialog");

    Expect({.text = question, .button = "No", .before = [this] { PressCloseBox(MainWindow()); }});
    MainWindow().close();
    EXPECT_FALSE(dialogs_.hasEnded);
    Expect({.text = question, .button = "Yes"});
    MainWindow().close();
    EXPECT_TRUE(dialogs_.hasEnded);
    EXPECT_EQ(Asked().size(), 5U) << "one question at a time";
}

TEST_F(MainWindowOnScreen, TheTickerTicks)
{
    Form().Timer1.Interval = 20;
    Form().Timer1.Enabled = true;
    RunUntil([&] { return Form().StatusBar1.Panels(1).Text() == "......"; }, "three ticks");
    Form().Timer1.Enabled = false;
}

TEST_F(MainWindowOnScreen, AHundredThousandRowsStaySmooth)
{
    constexpr int kRows = 100000;
    Press("cmdHideRecord");
    Form().lvwPermanent.Sorted = false;  // As while the records are read from their files.
    for (int i = 0; i < kRows; ++i) Keep("Record " + std::to_string((i + 1) * 7919LL % kRows));
    auto& view = dynamic_cast<Gtk::ColumnView&>(Widget("lvwPermanent"));
    auto scroll = view.get_vadjustment();
    RunUntil([&] { return scroll->get_upper() > kRows * 10.0; }, "a long list");
    for (int step = 1; step <= 10; ++step) {
        scroll->set_value(scroll->get_upper() * step / 10 - scroll->get_page_size());
        g_main_context_iteration(nullptr, FALSE);
    }
    ClickOn(Widget("lvwPermanentColumn1"));
    RunUntil([&] { return Form().lvwPermanent.Item(1).Text() == "Record 0"; }, "the sorted list");
    SelectRow("lvwPermanent", kRows);
    EXPECT_EQ(Form().lvwPermanent.SelectedItem(), &Form().lvwPermanent.Item(kRows));
    int cells = 0;
    EachLabel(view, [&cells](Gtk::Label&) { ++cells; });
    EXPECT_LT(cells, 3000) << "only rows in sight have widgets";
}

TEST_F(MainWindowOnScreen, BadTextsArePlainTextOnOneLine)
{
    const std::string bad = "<b>a & b</b>\r\n\t\u202Eright\u0301\u0301 " + std::string(100000, 'x');
    frmBrowser::AddRecordItem(Form().lvwPermanent, Record(bad, bad));
    Press("cmdHideRecord");
    std::string shown;
    RunUntil(
        [&] {
            EachLabel(Widget("lvwPermanent"), [&](Gtk::Label& label) {
                if (label.get_text().raw().rfind("<b>", 0) == 0) shown = label.get_text().raw();
            });
            return !shown.empty();
        },
        "the row");
    EXPECT_EQ(shown.substr(0, 12), "<b>a & b</b>");
    EXPECT_EQ(shown.find_first_of("\r\n\t"), std::string::npos);
    Form().StatusBar1.Panels(1).Text = bad;
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(Widget("StatusBar1Panel1")).get_text().raw(), shown);
    Form().lvwPermanent.Select(&Form().lvwPermanent.Item(1));
    Expect({.text = "Are you sure to delete this permanent record session?", .button = "No"});
    Press("cmdDelete");
    EXPECT_EQ(Asked().back().substr(0, 12), "<b>a & b</b>");

    const std::string browser = PlaceText("wbMyBrowser");
    for (const std::string& text : {bad, std::string("next"), bad}) dialogs_.Tell(text);
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(Widget("lblNotice")).get_text().raw(), shown);
    RunUntil([&] { return PlaceText("wbMyBrowser") != browser; }, "the room for the line");
    EXPECT_EQ(MainWindow().get_width(), 870);
    Press("cmdNoticeClose");
    EXPECT_EQ(dynamic_cast<Gtk::Label&>(Widget("lblNotice")).get_text().raw(), "next");
    Press("cmdNoticeClose");
    RunUntil([&] { return PlaceText("wbMyBrowser") == browser; }, "the line to go");
}

}  // namespace
}  // namespace velmora::test
