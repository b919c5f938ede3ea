// The dialogs on the screen, with real keys and clicks.
#include <gmock/gmock.h>
#include <gtkmm/entry.h>
#include <gtkmm/eventcontrollerkey.h>
#include <gtkmm/picture.h>

#include <fstream>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::HasSubstr;

constexpr char kTemporary[] = "Edit Temporary Record Session";
constexpr char kPermanent[] = "Edit Permanent Record Session";

class DialogOnScreen : public DesktopTest {
protected:
    /// Presses a key in a box and waits until the box has got it.
    static void PressAndSee(Gtk::Window& box, const std::string& key)
    {
        bool isSeen = false;
        auto keys = Gtk::EventControllerKey::create();
        keys->set_propagation_phase(Gtk::PropagationPhase::CAPTURE);
        keys->signal_key_released().connect([&](guint, guint, Gdk::ModifierType) { isSeen = true; });
        box.add_controller(keys);
        PressKeys(box, key);
        RunUntil([&] { return isSeen; }, key + " in the box");
        box.remove_controller(keys);
    }
    static Gtk::Entry& Entry(Gtk::Window& dialog, const std::string& name) { return FindIn<Gtk::Entry>(dialog, name); }
    /// Puts a text in the place of what is there, by the keyboard.
    static void Retype(Gtk::Window& dialog, const std::string& name, const std::string& keys)
    {
        Entry(dialog, name).grab_focus();
        PressKeys(dialog, "ctrl+a " + keys);
    }
    static void EntryReads(Gtk::Window& dialog, const std::string& name, const std::string& text)
    {
        RunUntil([&] { return Entry(dialog, name).get_text().raw() == text; }, name + " to read " + text);
    }

    ListItem& Kept(const std::string& postdata)
    {
        Keep("velmora://guide/old", postdata);
        SelectRow("lvwPermanent", 1);
        return Form().lvwPermanent.Item(1);
    }
    void Edit(const std::string& title, const Act& act)
    {
        if (Form().mnuHideRecord.Checked()) Press("cmdHideRecord");
        InDialog(
            title, [this] { Press("cmdEdit"); }, act);
    }
};

TEST_F(DialogOnScreen, TheEditorComesWithTheNewRecordAndChangesIt)
{
    server_.Page("/sent", "<p>sent</p>");
    Press("cmdRecord");
    Show("/form.html",
         "<form action='sent' method='post'><input name='a' value='one'><input name='b' value='two'>"
         "<input type='submit'></form>");
    // The clock stands still, so that the user is typing when the question comes: no key answers it yet.
    auto now = std::chrono::steady_clock::now();
    TheDesktop().Input().Now = [&now] { return now; };
    Script("document.querySelector('input').focus()");
    const auto escape = [] { PressAndSee(*OpenWindow("Velmora"), "Escape"); };
    Expect({.text = kRecordQuestion, .button = "Yes", .before = escape});
    InDialog(
        kTemporary, [this] { Key("Return"); },
        [this](Gtk::Window& dialog) {
            EXPECT_THAT(server_.Bodies("/sent"), testing::IsEmpty()) << "the submission waits";
            EXPECT_EQ(dialog.get_focus()->get_parent(), &FindIn(dialog, "txtSession"));
            EXPECT_FALSE(FindIn(dialog, "txtUrl").is_sensitive());
            EXPECT_FALSE(FindIn(dialog, "txtValue(2)").is_sensitive());
            EntryReads(dialog, "txtValue(1)", "two");
            EXPECT_TRUE(dialog.get_modal());
            EXPECT_EQ(dialog.get_transient_for(), &MainWindow());
            Retype(dialog, "txtValue(1)", "c space ampersand");
            EntryReads(dialog, "txtValue(1)", "c &");
            PressKeys(dialog, "Return");
        });
    WaitForDocument(server_.Url("/sent"));
    Go(server_.Url("/form.html"));
    Script("document.querySelector('input').focus()");
    Expect({.text = kRecordQuestion, .button = "Yes", .before = [&] {
                now += std::chrono::milliseconds(500);
                escape();
            }});
    Key("Return");
    RunUntil([this] { return AllAnswered() && server_.Bodies("/sent").size() == 2; }, "the answer No");
    TheDesktop().Input().Now = std::chrono::steady_clock::now;
    Form().ListView1.Remove(Form().ListView1.Item(2));
    Form().ListView1.Select(&Form().ListView1.Item(1));
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), "a=one&b=c%20%26");

    Edit(kTemporary, [](Gtk::Window& dialog) {
        Retype(dialog, "txtSession", "n e w");
        EntryReads(dialog, "txtSession", "new");
        ClickOn(FindIn(dialog, "cmdPermanentOK"));
    });
    EXPECT_EQ(Form().ListView1.Count(), 0);
    ASSERT_EQ(Form().lvwPermanent.Count(), 1);
    EXPECT_EQ(Form().lvwPermanent.Item(1).Text(), "new");
}

TEST_F(DialogOnScreen, EscapeAndTheCloseBoxOfTheEditorChangeNothing)
{
    const ListItem& row = Kept("a=one");
    for (const char* way : {"Escape", "close box", "Cancel"}) {
        Form().StatusBar1.Panels(1).Text = "";
        Edit(kPermanent, [&](Gtk::Window& dialog) {
            EXPECT_FALSE(FindIn(dialog, "cmdPermanentOK").is_sensitive());
            EntryReads(dialog, "txtValue(0)", "one");
            Retype(dialog, "txtValue(0)", "x");
            EntryReads(dialog, "txtValue(0)", "x");
            if (way[0] == 'E') PressKeys(dialog, "Escape");
            if (way[0] == 'c') dialog.close();
            if (way[0] == 'C') ClickOn(FindIn(dialog, "cmdCancel"));
        });
        EXPECT_EQ(row.SubItem("Postdata"), "a=one") << way;
        EXPECT_EQ(Status(), "Modification is cancelled!") << way;
    }
    RunUntil([this] { return MainWindow().is_active(); }, "the keyboard to come back to the main window");
}

TEST_F(DialogOnScreen, SixtyFieldsFillThreePagesAndAValueTooLongForItsBoxSurvivesASave)
{
    std::string postdata = "<b>&f0=" + std::string(100000, 'v');
    for (int i = 1; i < 60; ++i) postdata += "&f" + std::to_string(i) + "=" + std::to_string(i);
    ListItem& row = Kept(postdata);
    Edit(kPermanent, [](Gtk::Window& dialog) {
        EXPECT_FALSE(Entry(dialog, "txtValue(0)").get_editable());
        Retype(dialog, "txtValue(0)", "x");
        ClickOn(FindIn(dialog, "SSTab1Tab2"));
        RunUntil([&] { return FindIn(dialog, "txtValue(59)").get_mapped(); }, "page 3");
        EXPECT_FALSE(FindIn(dialog, "txtValue(0)").get_mapped());
        Retype(dialog, "txtValue(59)", "z");
        EntryReads(dialog, "txtValue(59)", "z");
        EachLabel(dialog,
                  [](Gtk::Label& label) { EXPECT_FALSE(label.get_layout()->is_ellipsized()) << label.get_text(); });
        PressKeys(dialog, "Return");
    });
    const std::string saved = row.SubItem("Postdata");
    EXPECT_TRUE(saved == postdata.substr(4, postdata.size() - 6) + "z") << saved.size();
}

TEST_F(DialogOnScreen, TheSmallDialogsTakeKeys)
{
    InDialog(
        "Edit Bookmark", [this] { Press("cmdBookmark"); },
        [](Gtk::Window& dialog) {
            EntryReads(dialog, "txtUrl", "velmora://guide/");
            EXPECT_FALSE(FindIn(dialog, "txtAction").is_sensitive());
            PressKeys(dialog, "g u i d e");
            EntryReads(dialog, "txtSession", "guide");
            PressKeys(dialog, "Return");
        });
    EXPECT_EQ(Form().lvwPermanent.Item(1).Text(), "guide");
    for (const auto& [key, home] : {std::pair("Escape", "velmora://guide/"), {"Return", "a:b"}}) {
        InDialog(
            "Default Home Page Setup", [this] { Form().mnuHome.Click.Raise(); },
            [key = key](Gtk::Window& dialog) { PressKeys(dialog, std::string("ctrl+a a colon b ") + key); });
        EXPECT_THAT(FileText(folder_ / "session/Velmora.xml"), HasSubstr(std::string("<Home>") + home + "</Home>"));
        InDialog(
            "About Velmora", [this] { Form().mnuAbout.Click.Raise(); },
            [key = key](Gtk::Window& dialog) {
                EXPECT_EQ(PlaceOnScreen(dialog), "350,273");
                EXPECT_TRUE(FindIn<Gtk::Picture>(dialog, "imgLogo").get_paintable());
                PressKeys(dialog, key);
            });
    }
    std::filesystem::remove_all(folder_ / "session");
    std::ofstream(folder_ / "session") << "in the way";
    for (int i = 0; i < 2; ++i) {
        InDialog(
            "Default Home Page Setup", [this] { Form().mnuHome.Click.Raise(); },
            [](Gtk::Window& dialog) { PressKeys(dialog, "Return"); });
    }
    EXPECT_THAT(TextOf("lblNotice"), HasSubstr("session/Velmora.xml: Not a directory"));
    Press("cmdNoticeClose");
    EXPECT_FALSE(Widget("Notice").get_visible()) << "told once";
}

}  // namespace
}  // namespace velmora::test
