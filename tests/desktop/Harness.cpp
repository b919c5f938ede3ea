#include "tests/desktop/Harness.h"

#include <gtkmm/button.h>
#include <gtkmm/columnview.h>
#include <gtkmm/entry.h>
#include <gtkmm/singleselection.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>

namespace velmora::test {

namespace {

constexpr std::chrono::seconds kLimit{10};
constexpr char kHome[] = "velmora://guide/";

/// A script on its way; shared, since the result may come when nobody waits any more.
struct Call {
    decltype(&webkit_web_view_evaluate_javascript_finish) finish;
    bool done = false;
    std::string text = {};
};

void Finished(GObject* view, GAsyncResult* result, gpointer data)
{
    const std::unique_ptr<std::shared_ptr<Call>> call(static_cast<std::shared_ptr<Call>*>(data));
    (*call)->done = true;
    GError* error = nullptr;
    if (JSCValue* value = (*call)->finish(WEBKIT_WEB_VIEW(view), result, &error)) {
        char* text = jsc_value_to_string(value);
        (*call)->text = text;
        g_free(text);
        g_object_unref(value);
    } else {
        ADD_FAILURE() << "the page's script failed: " << error->message;
        g_clear_error(&error);
    }
}

}  // namespace

bool ComesTrue(const std::function<bool()>& condition, std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    // A tick, so that an iteration ends and the limit is looked at even when nothing happens.
    const guint tick = g_timeout_add(
        10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    bool holds = condition();
    while (!holds && std::chrono::steady_clock::now() < deadline) {
        g_main_context_iteration(nullptr, TRUE);
        holds = condition();
    }
    g_source_remove(tick);
    return holds;
}

bool RunUntil(const std::function<bool()>& condition, const std::string& what)
{
    const bool holds = ComesTrue(condition, kLimit);
    if (!holds) ADD_FAILURE() << "waited in vain for " << what;
    return holds;
}

std::string FileText(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

TestDesktop& TheDesktop()
{
    static TestDesktop desktop;
    return desktop;
}

void DesktopTest::SetUp()
{
    TheDesktop();
    char pattern[] = "/tmp/velmora-test-XXXXXX";
    folder_ = mkdtemp(pattern);
    watch_ = Glib::signal_timeout().connect(
        [this] {
            AnswerOpenQuestion();
            return true;
        },
        5);
    StartProgram();
}

void DesktopTest::TearDown()
{
    program_.reset();
    watch_.disconnect();
    EXPECT_TRUE(AllAnswered()) << "a question was not asked: " << questions_.front().text;
    // The engine's network process may still be writing there.
    const auto isGone = [this] {
        std::error_code error;
        std::filesystem::remove_all(folder_, error);
        return !error;
    };
    RunUntil(isGone, "the test's folder to be gone");
}

void DesktopTest::StartProgram()
{
    if (!std::filesystem::exists(folder_ / "session")) {
        std::filesystem::create_directory(folder_ / "session");
        std::ofstream(folder_ / "session" / "Velmora.xml") << "<Type>Home</Type><Home>" << kHome << "</Home>";
    }
    completed_.clear();
    TheDesktop().hasEnded = false;
    program_ = std::make_unique<Program>(TheDesktop(), TheDesktop(),
                                         Program::Options{.programFolder = folder_,
                                                          .agentFolder = VELMORA_AGENT_FOLDER,
                                                          .dataFolder = dataFolder_,
                                                          .cacheFolder = {}});
    Form().wbMyBrowser.DocumentComplete.Add(
        [this](BrowserObject&, const std::string& url) { completed_.push_back(url); });
    program_->Start();
    WaitForDocument(kHome);
}

void DesktopTest::EndProgram()
{
    Form().mnuExit.Click.Raise();
    EXPECT_TRUE(TheDesktop().hasEnded);
    program_.reset();
}

void DesktopTest::Press(const std::string& name)
{
    auto& button = Widget<Gtk::Button>(name);
    ASSERT_TRUE(RunUntil([&] { return button.get_mapped() && button.is_sensitive(); }, name + " to be pressable"));
    g_signal_emit_by_name(button.gobj(), "clicked");
}

void DesktopTest::SetOff(const std::string& address)
{
    Widget<Gtk::Entry>("txtUrl").set_text(address);
    Press("cmdPlayback");
}

void DesktopTest::Go(const std::string& address)
{
    const std::size_t before = completed_.size();
    SetOff(address);
    RunUntil([&] { return completed_.size() > before && completed_.back() == address; }, address);
}

void DesktopTest::Keep(const std::string& url, const std::string& postdata)
{
    frmBrowser::AddRecordItem(Form().lvwPermanent, {"Form", "kept", url, server_.Url("/to.cgi"), postdata, "", ""});
}

void DesktopTest::SelectRow(const std::string& list, int row)
{
    Widget<Gtk::ColumnView>(list).get_model()->select_item(static_cast<guint>(row - 1), true);
}

void DesktopTest::MoveToPermanent()
{
    Press("cmdHideRecord");
    Form().SSTab1.Tab = 1;
    SelectRow("ListView1", 1);
    Press("cmdSave");
}

void DesktopTest::AnswerOpenQuestion()
{
    Gtk::Window* box = isAnswering_ ? nullptr : OpenWindow("MsgBox");
    if (!box) return;
    isAnswering_ = true;
    Answer(*box);
    isAnswering_ = false;
}

void DesktopTest::Answer(Gtk::Window& box)
{
    const std::string text = FindIn<Gtk::Label>(box, "lblText").get_text().raw();
    asked_.push_back(box.get_title().raw() + ": " + text);
    if (questions_.empty() || questions_.front().text != text) {
        ADD_FAILURE() << "nobody expected the question: " << text;
        return box.close();
    }
    const Question question = questions_.front();
    questions_.pop_front();
    if (question.before) question.before();
    g_signal_emit_by_name(FindIn(box, "btn" + question.button).gobj(), "clicked");
}

void DesktopTest::InDialog(const std::string& title, const std::function<void()>& open, const Act& act)
{
    bool hasActed = false;
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(8);
    sigc::connection watch = Glib::signal_timeout().connect(
        [&] {
            Gtk::Window* dialog = OpenWindow(title);
            if (dialog && !hasActed && dialog->get_focus() && dialog->get_height() > 0) {
                hasActed = true;
                act(*dialog);
            } else if (dialog && std::chrono::steady_clock::now() > limit) {
                ADD_FAILURE() << title << " is still open";
                dialog->close();
            }
            return true;
        },
        10);
    open();
    RunUntil([&] { return hasActed && !OpenWindow(title); }, "the dialog " + title);
    watch.disconnect();
}

std::string DesktopTest::Script(const std::string& script)
{
    const auto call = std::make_shared<Call>(Call{webkit_web_view_evaluate_javascript_finish});
    webkit_web_view_evaluate_javascript(Engine().View(), script.c_str(), -1, nullptr, nullptr, nullptr, Finished,
                                        new std::shared_ptr<Call>(call));
    RunUntil([&] { return call->done; }, "a script");
    return call->text;
}

void DesktopTest::Type(const std::string& selector, const std::string& text, const std::string& document)
{
    const std::string element = document + ".querySelector('" + selector + "')";
    Script(element + ".focus(); " + element + ".select(); 1");
    webkit_web_view_execute_editing_command_with_argument(Engine().View(), "InsertText", text.c_str());
    Await(element + ".value", text);
}

void DesktopTest::WaitUntilDrawn()
{
    // A page that has just finished is not on the screen yet, and what the mouse does there is lost. The
    // page itself waits: asking it again and again would keep it from drawing.
    const auto call = std::make_shared<Call>(Call{webkit_web_view_call_async_javascript_function_finish});
    webkit_web_view_call_async_javascript_function(
        Engine().View(), "return new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(done)));", -1,
        nullptr, nullptr, nullptr, nullptr, Finished, new std::shared_ptr<Call>(call));
    RunUntil([&] { return call->done; }, "the page on the screen");
}

void DesktopTest::Click(const std::string& selector)
{
    WaitUntilDrawn();
    const std::string box = "document.querySelector('" + selector + "').getBoundingClientRect()";
    const double x = std::stod(Script(box + ".x + 8"));
    ClickAt(Engine().Widget(), x, std::stod(Script(box + ".y + 8")));
}

void DesktopTest::Key(const std::string& key)
{
    WaitUntilDrawn();
    // The view may give the focus to the whole page when it gets the window's.
    Script("window.focused = document.activeElement; 1");
    gtk_widget_grab_focus(GTK_WIDGET(Engine().View()));
    FocusOn(MainWindow());
    Await("document.hasFocus()", "true");
    Script("window.focused.focus(); 1");
    Robot("key " + key);
}

bool DesktopTest::WaitForDocument(const std::string& url)
{
    return RunUntil([&] { return std::find(completed_.begin(), completed_.end(), url) != completed_.end(); },
                    "the document " + url);
}

}  // namespace velmora::test
