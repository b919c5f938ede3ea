// What a browser owes its user beside the forms: downloads, questions of pages, leave for what needs
// it, cookies that last, pages that hang, finding and enlarging.
#include <gmock/gmock.h>
#include <gtkmm/entry.h>
#include <gtkmm/filechooserdialog.h>

#include <fstream>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

using testing::Contains;
using testing::Not;

// The file chooser keeps its settings on the session bus, which a test machine has not.
[[maybe_unused]] const bool kSettingsInMemory = g_setenv("GSETTINGS_BACKEND", "memory", TRUE);
// Beside the desktop's own programs, one for addresses of the tests.
[[maybe_unused]] const bool kTestProgram =
    g_setenv("XDG_DATA_DIRS", VELMORA_TEST_SHARE ":/usr/local/share:/usr/share", TRUE);

class BrowserDuties : public DesktopTest {
protected:
    /// Sends the page's script off without waiting for it: it may open a question.
    void Start(const std::string& script)
    {
        webkit_web_view_evaluate_javascript(Engine().View(), script.c_str(), -1, nullptr, nullptr, nullptr, nullptr,
                                            nullptr);
    }
    /// Waits for a question that the page's script asks; it stands in the view itself.
    void AwaitScriptDialog()
    {
        RunUntil([&] { return Find(MainWindow(), "WebKitScriptDialogImpl"); }, "a script's question");
    }
};

class FileDownloads : public BrowserDuties {
protected:
    /// Goes to an address that turns out to be a file, and waits for the chooser.
    GtkFileChooser* Fetch(const std::string& url)
    {
        SetOff(url);
        RunUntil([] { return OpenWindow("Save File"); }, "the file chooser");
        return GTK_FILE_CHOOSER(OpenWindow("Save File")->gobj());
    }
    /// Types the path of a file in the test's folder and presses Save.
    void Save(GtkFileChooser* chooser, const std::string& name)
    {
        gtk_file_chooser_set_current_name(chooser, (folder_ / name).c_str());
        gtk_dialog_response(GTK_DIALOG(chooser), GTK_RESPONSE_ACCEPT);
    }
    static std::string NameIn(GtkFileChooser* chooser)
    {
        char* name = gtk_file_chooser_get_current_name(chooser);
        std::string text = name;
        g_free(name);
        return text;
    }
    /// Fetches a file of which only the beginning comes, and then the end of the connection or nothing.
    void FetchPart(const std::string& name, bool hangs)
    {
        server_.Answer(
            "/big.bin",
            {.Body = "HTTP/1.1 200 OK\r\nContent-Type: application/x-thing\r\nContent-Length: 400000\r\n\r\n" +
                     std::string(100000, 'x'),
             .Hangs = hangs,
             .IsRaw = true});
        Save(Fetch(server_.Url("/big.bin")), name);
    }
    bool IsThere(const std::string& name) { return std::filesystem::exists(folder_ / name); }
    void ListShows(bool isShown)
    {
        RunUntil([&] { return Widget("lstDownloads").get_visible() == isShown; }, "the list of downloads");
    }
};

TEST_F(FileDownloads, GoWhereTheUserSaysAndNeverOverAFileUnasked)
{
    server_.Answer("/report", {.Body = "new text",
                               .Headers = {{"Content-Disposition", "attachment; filename=\"../.a<b>&.txt\""}}});
    Show("/page.html", "<form action='x'></form>");
    GtkFileChooser* chooser = Fetch(server_.Url("/report"));
    EXPECT_EQ(NameIn(chooser), "a_b_&.txt");
    RunUntil([&] { return !Form().Timer1.Enabled(); }, "the ticker's end: no page will come");
    EXPECT_EQ(Script("location.pathname"), "/page.html");
    const std::string path = folder_ / "kept.txt";
    Expect({.text = "The download is complete:\n" + path, .button = "Ok"});
    Save(chooser, "kept.txt");
    RunUntil([&] { return AllAnswered(); }, "the message");
    EXPECT_EQ(FileText(folder_ / "kept.txt"), "new text");

    std::ofstream(path) << "precious";
    chooser = Fetch(server_.Url("/report"));
    Save(chooser, "kept.txt");
    RunUntil([] { return OpenWindow("GtkMessageDialog"); }, "the chooser's own question");
    gtk_dialog_response(GTK_DIALOG(OpenWindow("GtkMessageDialog")->gobj()), GTK_RESPONSE_CANCEL);
    EXPECT_EQ(FileText(folder_ / "kept.txt"), "precious");
    gtk_dialog_response(GTK_DIALOG(chooser), GTK_RESPONSE_CANCEL);
    RunUntil([] { return !OpenWindow("Save File"); }, "the chooser to go");
    EXPECT_EQ(FileText(folder_ / "kept.txt"), "precious");
    ListShows(false);
}

TEST_F(FileDownloads, RunInSightCanBeCancelledOrFailAndEndWithTheProgram)
{
    FetchPart("part.bin", true);
    ListShows(true);
    RunUntil([&] { return IsThere("part.bin") || IsThere("part.bin.wkdownload"); }, "bytes");
    Press("cmdCancelDownload");
    ListShows(false);
    EXPECT_FALSE(IsThere("part.bin"));

    Expect({.text = "The download has failed:\n" + (folder_ / "broken.bin").string() +
                    "\nConnection terminated unexpectedly\nFetch it from its page again.",
            .button = "Ok"});
    FetchPart("broken.bin", false);
    RunUntil([&] { return AllAnswered(); }, "the message");

    FetchPart("part.bin", true);
    ListShows(true);
    Restart();
    ListShows(false);
    EXPECT_FALSE(IsThere("part.bin"));
}

TEST_F(BrowserDuties, AScriptsQuestionsAreAnsweredByKeyAndHoldNobodyForEver)
{
    Show("/ask.html", "<title>ask</title>");
    for (const auto& [question, key, answer] : {std::tuple("confirm('<b>Sure?</b>')", "Return", "true"),
                                                {"confirm('Sure?')", "Escape", "false"},
                                                {"prompt('Name?', 'Ann')", "Return", "Ann"}}) {
        Start("document.title = " + std::string(question));
        AwaitScriptDialog();
        PressKeys(MainWindow(), key);
        Await("document.title", answer);
    }

    Start("for (;;) alert('again')");
    AwaitScriptDialog();
    Expect({.text = "The page " + server_.Url("/ask.html") + " does not answer. Do you want to stop it?",
            .button = "Yes"});
    Show("/fine.html", "<title>fine</title>");
    EXPECT_EQ(Script("document.title"), "fine");
}

TEST_F(BrowserDuties, TheGuideTakesWhatItCanShowAndFromItsOwnPagesAlone)
{
    Go("velmora://guide/practice");
    Press("cmdBack");
    RunUntil([&] { return Completed().back() == "velmora://guide/"; }, "the page before");
    // All pages that it leads to are there, and what their forms go to shows what was sent.
    Start(R"((async () => {
        const pages = new Set(["practice"]), wrong = [];
        for (const page of pages) {
            const answer = await fetch(page, {method: "POST", body: "a=x%2By"}), text = await answer.text();
            const isRight = answer.ok && /answer$|result$/.test(page) === text.includes("<td>x+y</td>");
            if (!isRight) wrong.push(page);
            for (const [, link] of text.matchAll(/(?:href=|action=|src=|open\()["'](.+?)["']/g)) pages.add(link);
        }
        document.title = wrong.join() || String(pages.size > 25);
    })())");
    Await("String(document.title !== 'Welcome to Velmora')", "true");
    EXPECT_EQ(Script("document.title"), "true");
    const Heartbeat heart;
    Start(
        "fetch('answer', {method: 'POST', body: 'a=' + 'x+'.repeat(25000000)})"
        ".then(answer => document.title = answer.status)");
    Await("document.title", "413");
    EXPECT_LT(heart.Longest(), 1.0);

    Go("velmora://other/");
    EXPECT_EQ(Script("document.title"), "This page could not be loaded");
    server_.Answer("/moved", {.Status = 302, .Headers = {{"Location", "velmora://guide/search"}}});
    Show("/page.html", "<iframe src='velmora://guide/search'></iframe><iframe src='/moved'></iframe>");
    EXPECT_THAT(Completed(), Not(Contains("velmora://guide/search")));
}

TEST_F(BrowserDuties, AddressesOfOtherProgramsLeaveThePageAsItIs)
{
    const std::string opened = folder_ / "opened";
    g_setenv("VELMORA_TEST_OPENED", opened.c_str(), TRUE);
    const auto awaitLine = [&](const std::string& text) {
        RunUntil([&] { return TextOf("lblNotice") == text; }, text);
        Press("cmdNoticeClose");
    };
    const std::string question =
        "The site " + server_.Url("") + " wants to open x-velmora-test:ann with another program. Do you allow it?";

    Show("/contact.html",
         "<input id='typed'><p><a id='ann' href='x-velmora-test:ann'>write</a>"
         "<p><a id='none' target='_blank' href='nobody-opens:this'>open</a><iframe "
         "src='x-velmora-test:frame'></iframe>");
    awaitLine(server_.Url("") +
              " was kept from opening x-velmora-test:frame with another program. Press a link to it if you want that.");
    Type("#typed", "half a letter");
    Expect({.text = question, .button = "Yes"});
    Click("#ann");
    RunUntil([&] { return std::filesystem::exists(opened); }, "the other program");
    Expect({.text = question, .button = "No"});
    Click("#ann");
    RunUntil([&] { return AllAnswered(); }, "the question");
    Click("#ann");
    Click("#none");
    awaitLine("No program on this computer opens nobody-opens:this. Install one to follow it.");
    SetOff("nobody-opens:that");
    awaitLine("No program on this computer opens nobody-opens:that. Install one to follow it.");
    EXPECT_EQ(Script("typed.value"), "half a letter");
    EXPECT_FALSE(Form().Timer1.Enabled());
}

TEST_F(BrowserDuties, NoSiteGetsWhatNeedsLeaveWithoutAYes)
{
    Show("/where.html", "<title>?</title>");
    const std::string site = server_.Url("");
    const std::string ask =
        "navigator.geolocation.getCurrentPosition(() => document.title = 'yes', "
        "error => document.title += error.code)";
    Expect(
        {.text = "The site " + site + " wants to know where you are. Do you allow it?", .button = "No", .before = [] {
             Gtk::Window* box = OpenWindow("Velmora");
             EXPECT_EQ(box->get_default_widget()->get_name().raw(), "btnNo") << "Enter refuses, too";
         }});
    // While the user's next page is on its way, the one that stands asks in its own name.
    server_.Answer("/slow", {.Hangs = true});
    SetOff(server_.Url("/slow", "localhost"));
    Script(ask + "; 1");
    Await("document.title", "?1");
    Show("/where.html", "<title>!</title>");
    Script(ask + "; 1");
    Await("document.title", "!1");
    Expect({.text = "The site " + site + " wants to read what you have copied. Do you allow it?", .button = "Yes"});
    gdk_clipboard_set_text(gdk_display_get_clipboard(gdk_display_get_default()), "copied");
    Show("/paste.html", "<p onclick='navigator.clipboard.readText().then(text => document.title = text)'>paste</p>");
    Click("p");
    // Newer engines forget that the user has clicked when the program runs a script in between.
    RunUntil([&] { return AllAnswered(); }, "the question about the clipboard");
    Await("document.title", "copied");
    // A window that is closed under its question gets nothing, and its opener stays.
    server_.Page("/asks.html", "<body onload='navigator.geolocation.getCurrentPosition(() => 1)'>");
    server_.Page("/opener.html", "<title>stands</title><p onclick=\"w = window.open('/asks.html')\">open</p>");
    Go(server_.Url("/opener.html", "localhost"));
    Expect({.text = "Pop-up window is required, do you want to block pop-up?", .button = "No"});
    Expect({.text = "The site " + server_.Url("", "localhost") + " wants to know where you are. Do you allow it?",
            .button = "Yes",
            .before = [&] {
                Script("w.close(); 1");
                RunUntil([] { return !OpenWindow("Popup"); }, "the window's end");
            }});
    Click("p");
    RunUntil([&] { return AllAnswered(); }, "the questions");
    EXPECT_EQ(Script("document.title"), "stands");
}

TEST_F(BrowserDuties, CookiesAndSiteStorageLastFromRunToRun)
{
    EndProgram();
    dataFolder_ = folder_ / "data";
    StartProgram();
    server_.Answer("/set", {.Body = "<p>", .Headers = {{"Set-Cookie", "kept=yes; max-age=1000"}}});
    Go(server_.Url("/set"));
    Script("localStorage.setItem('kept', 'too')");
    Restart();
    Show("/read.html", "<p>");
    EXPECT_EQ(Script("document.cookie + localStorage.getItem('kept')"), "kept=yestoo");
    const auto open = std::filesystem::perms::group_all | std::filesystem::perms::others_all;
    for (const auto& folder : {dataFolder_, dataFolder_ + "/cache"})
        EXPECT_EQ(std::filesystem::status(folder).permissions() & open, std::filesystem::perms::none) << folder;
}

TEST_F(BrowserDuties, APageThatHangsIsToldAndCanBeStopped)
{
    Show("/hang.html", "<body onclick='for (;;);'><p id='p'>click</p>");
    Expect({.text = "The page " + server_.Url("/hang.html") + " does not answer. Do you want to stop it?",
            .button = "Yes"});
    Click("#p");
    RunUntil([&] { return AllAnswered(); }, "the question");
    AwaitExplanation();
    Show("/fine.html", "<title>fine</title>");
    EXPECT_EQ(Script("document.title"), "fine");
}

TEST_F(BrowserDuties, KeysFindAndEnlarge)
{
    Show("/text.html", "<p>one two</p><p>two three</p>");
    const auto found = [&](const std::string& place) { Await("getSelection().anchorNode?.textContent ?? ''", place); };
    Key("ctrl+f");
    RunUntil([&] { return Widget("txtFind").get_mapped(); }, "the find row");
    Widget<Gtk::Entry>("txtFind").set_text("TWO");
    found("one two");
    Press("cmdFindNext");
    found("two three");
    Key("F3");
    found("one two");
    Key("shift+F3");
    found("two three");
    Widget<Gtk::Entry>("txtFind").set_text("four");
    RunUntil([&] { return TextOf("lblFind") == "Not found"; }, "the outcome");
    Key("Escape");
    RunUntil([&] { return !Widget("txtFind").get_mapped(); }, "the find row to go");

    const auto zoom = [&](double level) {
        RunUntil([&] { return webkit_web_view_get_zoom_level(Engine().View()) == level; }, "the size");
    };
    Key("ctrl+plus ctrl+plus");
    zoom(1.2);
    Key("ctrl+minus");
    zoom(1.1);
    Key("ctrl+0");
    zoom(1.0);
    Click("p");
    Key("ctrl+a ctrl+c");
    RunUntil([&] { return Script("getSelection().toString()").find("three") != std::string::npos; }, "all selected");
    Key("a keydown ctrl click 5 keyup ctrl");
    zoom(0.9);
}

}  // namespace
}  // namespace velmora::test
