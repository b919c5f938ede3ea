// A user at the real window: presses widgets, types into pages, answers questions, and waits for
// what happens, never for a time.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "program/Program.h"
#include "tests/desktop/Hands.h"
#include "tests/support/Heartbeat.h"
#include "tests/support/WebServer.h"

namespace velmora::test {

constexpr char kRecordQuestion[] = "A temporary record is created, do you want to view/edit it now?";

/// Lets events run until the condition holds or the time is up, and tells whether it holds.
bool ComesTrue(const std::function<bool()>& condition, std::chrono::milliseconds limit);
/// The same, for what has to come. After ten seconds the test fails, with `what` it waited
/// for, and false comes back.
bool RunUntil(const std::function<bool()>& condition, const std::string& what);

/// The bytes of a file.
std::string FileText(const std::filesystem::path& file);

/// The desktop, but the end of the program is only noted: a test may start the next one.
class TestDesktop : public Desktop {
public:
    void EndProgram() override { hasEnded = true; }

    bool hasEnded = false;
};

/// The one desktop of the test program.
TestDesktop& TheDesktop();

/// A question that the user expects, and the button that answers it.
struct Question {
    std::string text;
    std::string button;                 ///< "Yes", "No", "Ok" or "Cancel".
    std::function<void()> before = {};  ///< Runs while the question is open, ahead of the answer.
};

class DesktopTest : public testing::Test {
protected:
    /// Starts the program; it shows its guide.
    void SetUp() override;
    void TearDown() override;

    /// Starts the program on the test's session folder and waits for the first page, the guide.
    void StartProgram();
    /// Ends it, as a user's Exit does, and lets its windows go.
    void EndProgram();
    void Restart()
    {
        EndProgram();
        StartProgram();
    }

    frmBrowser& Form() { return program_->Form(); }
    WebKitBrowser& Engine() { return program_->Engine(); }
    Gtk::Window& MainWindow() { return program_->View().Surface(); }

    // The window.
    template <class Kind = Gtk::Widget>
    Kind& Widget(const std::string& name)
    {
        return FindIn<Kind>(MainWindow(), name);
    }
    std::string TextOf(const std::string& label) { return Widget<Gtk::Label>(label).get_text().raw(); }
    /// Presses a button that a user could press now: it is on the screen and enabled.
    void Press(const std::string& button);
    /// Types the address and presses Go.
    void SetOff(const std::string& address);
    /// The same, and waits until the document has completed.
    void Go(const std::string& address);
    /// Puts a page on the server and goes there.
    void Show(const std::string& path, const std::string& html, const std::string& type = "text/html; charset=utf-8")
    {
        server_.Page(path, html, type);
        Go(server_.Url(path));
    }
    std::string Status() { return Form().StatusBar1.Panels(1).Text(); }
    /// Puts a permanent record of a form that goes to to.cgi into the list.
    void Keep(const std::string& url, const std::string& postdata);
    /// Selects a row of a list, from 1, through the list on the screen.
    void SelectRow(const std::string& list, int row);
    /// Moves the first temporary record to the permanent ones.
    void MoveToPermanent();

    // Questions. One that nobody expects fails the test.
    void Expect(Question question) { questions_.push_back(std::move(question)); }
    /// "title: text" of every question so far.
    const std::vector<std::string>& Asked() const { return asked_; }
    bool AllAnswered() const { return questions_.empty(); }

    using Act = std::function<void(Gtk::Window&)>;
    /// Calls `open`, which is held until its dialog has closed, and `act` on the dialog once it is
    /// there; `act` must close it.
    void InDialog(const std::string& title, const std::function<void()>& open, const Act& act);

    // The page.
    /// Runs a script in the page's own world and gives its result as text.
    std::string Script(const std::string& script);
    /// Waits until a script gives that text.
    void Await(const std::string& script, const std::string& text)
    {
        RunUntil([&] { return Script(script) == text; }, script + " to be " + text);
    }
    void AwaitExplanation() { Await("document.title", "This page could not be loaded"); }
    /// Types a text into a field, by its CSS selector, as the keyboard does.
    void Type(const std::string& selector, const std::string& text, const std::string& document = "document");
    /// Presses the real mouse button over an element, or the real key while an element has the focus.
    void Click(const std::string& selector);
    void Key(const std::string& key);
    /// Until then the mouse does nothing to a page that has just finished.
    void WaitUntilDrawn();
    /// Addresses of all documents that have completed in this program.
    const std::vector<std::string>& Completed() const { return completed_; }
    bool WaitForDocument(const std::string& url);

    std::filesystem::path folder_;
    std::string dataFolder_;  ///< For cookies and site storage; empty: nothing is kept.
    WebServer server_;

private:
    void AnswerOpenQuestion();
    void Answer(Gtk::Window& box);

    std::unique_ptr<Program> program_;
    std::deque<Question> questions_;
    std::vector<std::string> asked_;
    std::vector<std::string> completed_;
    sigc::connection watch_;
    bool isAnswering_ = false;
};

}  // namespace velmora::test
