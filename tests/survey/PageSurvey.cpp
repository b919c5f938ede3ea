// How one form of a page that nobody here wrote gets on with the program:
//
//   velmora_page_survey <folder of the site> <path of the page in it> <number of the form, from 0>
//
// tools/survey-pages runs it for each form of many pages. What else the program prints is noise.
#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>
#include <sstream>

#include "platform/webkit/engine/Sandbox.h"
#include "survey_script.h"
#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::size_t kShown = 160;    ///< Of a long text.
constexpr std::ptrdiff_t kAhead = 30;  ///< Of it, ahead of what matters.

/// What became of a form. Only one that the page has sent, with data, counts as tried.
struct Outcome {
    bool tried = false;
    bool announced = false;
    bool recorded = false;
    bool filled = false;
    bool sentAgain = false;
    int forms = 0;  ///< How many the page shows.
    std::string reason = {};
};

gboolean AgreeTo(WebKitWebView*, WebKitScriptDialog* dialog, gpointer)
{
    if (webkit_script_dialog_get_dialog_type(dialog) != WEBKIT_SCRIPT_DIALOG_ALERT) {
        webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
    }
    return TRUE;
}

/// A user who sends one form of one page, keeps the record and has the next run of the program play it back.
class Visit : public DesktopTest {
public:
    /// `page` is a path below `site`, the folder that the server gives; forms count from 0.
    Visit(const fs::path& site, std::string page, const std::string& form)
        : page_(std::move(page)), which_("(" + form + ")"), whichStep_("(" + form + ",")
    {
        server_.Serve(site);
    }

    Outcome Run()
    {
        SetUp();
        Prepare();
        Outcome outcome;
        Try(outcome);
        TearDown();
        return outcome;
    }

private:
    void TestBody() override {}

    /// What a program that has just started needs.
    void Prepare()
    {
        g_signal_connect(Engine().View(), "script-dialog", G_CALLBACK(AgreeTo), nullptr);
        // No request leaves the machine.
        WebKitNetworkProxySettings* proxy = webkit_network_proxy_settings_new(server_.Url("").c_str(), nullptr);
        webkit_network_session_set_proxy_settings(Engine().Session(), WEBKIT_NETWORK_PROXY_MODE_CUSTOM, proxy);
        webkit_network_proxy_settings_free(proxy);
        Form().wbMyBrowser.BeforeNavigate2.Add([this](BeforeNavigate2Event& event) {
            const std::size_t mark = event.URL.find('?');
            std::string query = mark == std::string::npos ? "" : event.URL.substr(mark + 1);
            query = query.substr(0, query.find('#'));
            // The server reads such an escape in an address.
            for (std::size_t i = 0; (i = query.find("%7E", i)) != std::string::npos;) query.replace(i, 3, "~");
            announced_.push_back(event.PostData.empty() ? query : event.PostData);
        });
        Press("cmdPrompt");
    }

    std::string Ask(const std::string& question)
    {
        static const std::string script(survey_script::Find("eyes.js"));
        return Script("(window.velmoraSurvey ||= " + script + ")." + question);
    }
    int Number(const std::string& question) { return std::atoi(Ask(question).c_str()); }

    void ClickAtPlace(const std::string& place)
    {
        double x = 0;
        double y = 0;
        if (place == "key") return Key("Return");
        if (!(std::istringstream(place) >> x >> y)) return;
        WaitUntilDrawn();
        ClickAt(Engine().Widget(), x, y);
    }

    /// Goes to the page and waits until it has a form in sight, or something has been sent.
    bool Load(const std::string& url)
    {
        const std::size_t before = Completed().size();
        mark_ = server_.Requests().size();
        SetOff(url);
        const auto isThere = [&] {
            const char* address = webkit_web_view_get_uri(Engine().View());
            return Submission() || (address && std::count(Completed().begin() + static_cast<std::ptrdiff_t>(before),
                                                          Completed().end(), address) > 0);
        };
        const auto hasForm = [&] { return Submission() || Number("count()") > 0; };
        if (!ComesTrue(isThere, 15s)) return false;
        if (ComesTrue(hasForm, 2s)) return true;
        ClickAtPlace(Ask("opener()"));
        return ComesTrue(hasForm, 2s);
    }

    void Fill()
    {
        for (int step = 0; !Submission() && step < Number("steps" + which_); ++step) {
            const std::string place = whichStep_ + std::to_string(step);
            const std::string text = Ask("step" + place + ")");
            if (text.empty()) continue;
            webkit_web_view_execute_editing_command_with_argument(Engine().View(), "InsertText", text.c_str());
            const std::string isTyped = "isTyped" + place + ",'" + text + "',";
            if (!ComesTrue([&] { return Ask(isTyped + "false)") == "true"; }, 300ms)) Ask(isTyped + "true)");
        }
        state_ = Ask("state" + which_);
        pairs_.clear();
        std::istringstream lines(Ask("pairs" + which_));
        for (std::string pair; std::getline(lines, pair);) pairs_.push_back(pair);
    }

    /// Fills and sends the form as a user does. Gives why that did not come about, or nothing.
    std::string Send()
    {
        std::string how;
        mark_ = server_.Requests().size();
        announced_.clear();
        Fill();
        if (Submission()) return {};  // A choice may send a form by itself.
        ComesTrue([&] { return (how = Ask("send" + which_)) != "disabled"; }, 2s);
        ClickAtPlace(how);
        if (ComesTrue([&] { return Submission() != nullptr; }, 5s)) return {};
        if (how == "disabled") return "its button stays disabled";
        const std::string refused = Ask("refused" + which_);
        return refused.empty() ? "nothing came of it" : "the page refuses " + refused;
    }

    /// What the page sent first since it was loaded, or since the user began to send. A script gets other
    /// things, too.
    const Request* Submission() const
    {
        const auto isSubmission = [this](const Request& request) {
            if (request.IsFile || request.Method == "OPTIONS" || request.Method == "CONNECT") return false;
            if (request.Method != "GET" || request.IsPage) return request.Method != "GET" || !request.Query.empty();
            return std::any_of(pairs_.begin(), pairs_.end(), [&](const std::string& pair) {
                const std::string value = pair.substr(pair.find('=') + 1);
                return value.size() > 3 && request.Query.find(value) != std::string::npos;
            });
        };
        const auto& requests = server_.Requests();
        const auto since = requests.begin() + static_cast<std::ptrdiff_t>(mark_);
        const auto found = std::find_if(since, requests.end(), isSubmission);
        return found == requests.end() ? nullptr : &*found;
    }
    std::string Received() const { return DataOf(Submission()); }
    /// Whether the page has sent the same as at first, be it after something else.
    bool HasComeAgain() const
    {
        const auto begin = server_.Requests().begin() + static_cast<std::ptrdiff_t>(mark_);
        return std::any_of(begin, server_.Requests().end(),
                           [&](const Request& request) { return DataOf(&request) == received_; });
    }
    /// Its query or its body, with a plain boundary.
    static std::string DataOf(const Request* request)
    {
        if (!request) return {};
        std::string body = request->Method == "GET" ? request->Query : request->Body;
        const std::size_t at = request->ContentType.find("boundary=");
        if (at == std::string::npos) return body;
        const std::string boundary = request->ContentType.substr(at + 9);
        for (std::size_t i = 0; (i = body.find(boundary, i)) != std::string::npos;) {
            body.replace(i, boundary.size(), "B");
        }
        return body;
    }

    /// Whether that is what came; of a form that does not go as pairs by itself, all that the user put in.
    bool IsTold(const std::string& told) const
    {
        const Request& request = *Submission();
        const bool isPairs = request.Method == "GET" || request.ContentType.ends_with("/x-www-form-urlencoded");
        if (told.empty() || told == Received() || (isPairs && request.IsPage)) return told == Received();
        return std::all_of(pairs_.begin(), pairs_.end(), [&](const std::string& pair) {
            return ("&" + told + "&").find("&" + pair + "&") != std::string::npos;
        });
    }

    void Try(Outcome& outcome)
    {
        Press("cmdRecord");
        const bool hasForm = Load(server_.Url(page_));
        ComesTrue([] { return false; }, 500ms);  // A user looks at a page before doing anything.
        outcome.forms = Number("count()");
        if (!hasForm || outcome.forms == 0) return Fail(outcome, "no form in sight", "", "");
        const std::string tag = Ask("tag" + which_);
        Expect({.text = kRecordQuestion, .button = "No"});
        std::string obstacle = Send();
        // It was the first of two steps, or the page moved under the mouse.
        if (!obstacle.empty()) obstacle = Send();
        if (!obstacle.empty()) return Fail(outcome, "not sent: " + obstacle, "", tag);
        received_ = Received();
        if (received_.empty() || (pairs_.empty() && !Submission()->IsPage))
            return Fail(outcome, "not sent: no field has a name", "", tag);
        outcome.tried = true;
        ComesTrue([&] { return Form().ListView1.Count() > 0; }, 2500ms);
        outcome.recorded = Form().ListView1.Count() > 0;
        outcome.announced = std::any_of(announced_.begin(), announced_.end(), [&](auto& told) { return IsTold(told); });
        std::erase(announced_, "");
        if (!outcome.announced && announced_.empty()) Fail(outcome, "not announced", tag, received_);
        if (!outcome.announced && !announced_.empty()) Fail(outcome, "bytes differ", announced_[0], received_);
        if (!outcome.recorded) return Fail(outcome, "not recorded", tag, received_);
        MoveToPermanent();
        Restart();
        PlayBack(outcome);
    }

    /// What was sent again the same was filled; otherwise the page is looked at once more, without the click.
    void PlayBack(Outcome& outcome)
    {
        Prepare();
        const std::string url = Form().lvwPermanent.Item(1).SubItem("Url");
        Load(url);
        ComesTrue([&] { return HasComeAgain(); }, 5s);
        const std::string again = HasComeAgain() ? received_ : Received();
        outcome.filled = outcome.sentAgain = again == received_;
        if (outcome.sentAgain) return;
        const std::string status = Status();
        Press("cmdAutoClick");
        Load(url);
        std::string state;
        outcome.filled = ComesTrue([&] { return (state = Ask("state" + which_)) == state_; }, 4s);
        if (!outcome.filled) return Fail(outcome, "not filled", state, state_);
        if (again.empty()) return Fail(outcome, "not clicked", status, received_);
        Fail(outcome, "sent something else", again, received_);
    }

    /// The first reason counts. Of what is not the other, the part where they part is told.
    static void Fail(Outcome& outcome, const std::string& what, const std::string& is, const std::string& was)
    {
        if (!outcome.reason.empty()) return;
        const auto parting = std::mismatch(is.begin(), is.end(), was.begin(), was.end()).first - is.begin();
        const auto from = static_cast<std::size_t>(std::max(parting - kAhead, std::ptrdiff_t{0}));
        outcome.reason = what + ": " + is.substr(from, kShown) + "  <>  " + was.substr(from, kShown);
    }

    const std::string page_;
    const std::string which_;
    const std::string whichStep_;
    std::string state_;  ///< The form as the user has filled it.
    std::vector<std::string> pairs_;
    std::vector<std::string> announced_;
    std::size_t mark_ = 0;  ///< How many requests came before.
    std::string received_;
};

}  // namespace
}  // namespace velmora::test

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    if (argc != 4) return 2;
    g_setenv("GTK_A11Y", "none", TRUE);
    // Where no process may get a sandbox the engine would not start one web process.
    if (!velmora::SandboxObstacle().empty()) g_setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1", TRUE);
    velmora::test::Outcome outcome = velmora::test::Visit(argv[1], argv[2], argv[3]).Run();
    std::replace_if(
        outcome.reason.begin(), outcome.reason.end(), [](unsigned char c) { return c < ' '; }, ' ');
    std::cout << "\nsurvey " << outcome.forms << ' ' << outcome.tried << outcome.announced << outcome.recorded
              << outcome.filled << outcome.sentAgain << ' ' << outcome.reason << std::endl;
    return 0;
}
