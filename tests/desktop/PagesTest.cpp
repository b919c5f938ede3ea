// The form pages of tests/pages, each recorded and played back on the real engine.
//
// A page begins with a comment that says what a user does there and what has to come of it, a line for
// each, "key: text". A line that begins with blanks continues the one above; \n and \r stand for the
// characters.
//
//   charset    The charset that the server sends the page in; "utf-8" if it is missing. The file is UTF-8.
//   type       "selector = text": the user types the text into a field. Any number of these.
//   run        A script that runs in the page, for what the user does with the mouse. Any number.
//   submit     "click selector", "enter selector" (the Enter key in a field) or "run script".
//   post, get  What the server receives: the body, or the query. A multipart body's boundary is "B".
//   announced  What the program is told to go out; the same if it is missing.
//   record     The post data of the record; the same as announced if it is missing.
//   playback   What the server receives when the record is played back; the same as at first if it is
//              missing. "by hand": the form is filled but has no button, so the user submits it as at
//              first. "left alone": the form is not filled, so that it is recorded again.
//   to         The path of the request, "to.cgi" if it is missing.
//
// A page without such a comment belongs to another page.
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "editor/frmEdit.h"
#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

constexpr char kDefaultAction[] = "to.cgi";

std::string InCharset(const std::string& utf8, const std::string& charset)
{
    gsize length = 0;
    const std::unique_ptr<char, decltype(&g_free)> bytes(
        g_convert(utf8.data(), static_cast<gssize>(utf8.size()), charset.c_str(), "UTF-8", nullptr, &length, nullptr),
        g_free);
    return {bytes.get(), length};
}

std::string WithControls(std::string text)
{
    for (const auto& [written, meant] : {std::pair{"\\n", "\n"}, std::pair{"\\r", "\r"}}) {
        for (std::size_t at = 0; (at = text.find(written, at)) != std::string::npos; ++at) text.replace(at, 2, meant);
    }
    return text;
}

/// A page and what its comment says.
class FormPage {
public:
    explicit FormPage(const fs::path& file) : name_(file.filename()), content_(FileText(file))
    {
        ReadComment(content_);
        content_ = InCharset(content_, Charset());
    }

    const std::string& Name() const { return name_; }
    const std::string& Content() const { return content_; }
    std::string ContentType() const { return "text/html; charset=" + Charset(); }
    bool IsTested() const { return !Get("submit").empty(); }
    const std::vector<std::pair<std::string, std::string>>& Lines() const { return lines_; }

    std::string Get(const std::string& key, const std::string& otherwise = "") const
    {
        for (const auto& [name, text] : lines_) {
            if (name == key) return text;
        }
        return otherwise;
    }
    bool IsPost() const { return Get("get", "-") == "-"; }
    std::string Received() const { return Get(IsPost() ? "post" : "get"); }
    std::string Announced() const { return Get("announced", Received()); }
    std::string Recorded() const { return Get("record", Announced()); }
    bool IsLeftAlone() const { return Get("playback") == "left alone"; }
    bool IsPlayedBack() const { return !IsLeftAlone() && Get("playback") != "by hand"; }
    std::string PlayedBack() const { return IsPlayedBack() ? Get("playback", Received()) : Received(); }

private:
    std::string Charset() const { return Get("charset", "utf-8"); }
    void ReadComment(const std::string& text)
    {
        const std::size_t start = text.find("<!--\n");
        if (start == std::string::npos) return;
        std::istringstream comment(text.substr(start + 5, text.find("-->", start) - start - 5));
        for (std::string line; std::getline(comment, line);) {
            if (line.starts_with(' ') && !lines_.empty()) {
                lines_.back().second += line.substr(line.find_first_not_of(' '));
            } else if (const std::size_t colon = line.find(':'); colon != std::string::npos) {
                const std::size_t value = line.find_first_not_of(' ', colon + 1);
                lines_.emplace_back(line.substr(0, colon), value == std::string::npos ? "" : line.substr(value));
            }
        }
        for (auto& [key, value] : lines_) {
            if (key != "run") value = WithControls(value);
        }
    }

    std::string name_;
    std::string content_;
    std::vector<std::pair<std::string, std::string>> lines_;
};

void PrintTo(const FormPage& page, std::ostream* stream) { *stream << page.Name(); }

const std::vector<FormPage>& AllPages()
{
    static const std::vector<FormPage> pages = [] {
        std::vector<FormPage> read;
        for (const auto& entry : fs::directory_iterator(VELMORA_TEST_PAGES)) {
            if (entry.path().extension() == ".html") read.emplace_back(entry.path());
        }
        std::sort(read.begin(), read.end(), [](const auto& a, const auto& b) { return a.Name() < b.Name(); });
        return read;
    }();
    return pages;
}

const FormPage& PageOf(const std::string& name)
{
    return *std::find_if(AllPages().begin(), AllPages().end(), [&](const auto& page) { return page.Name() == name; });
}

std::vector<FormPage> TestedPages()
{
    std::vector<FormPage> tested;
    std::copy_if(AllPages().begin(), AllPages().end(), std::back_inserter(tested),
                 [](const FormPage& page) { return page.IsTested(); });
    return tested;
}

class PagesRun : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/to.cgi", "arrived");
        for (const FormPage& page : AllPages()) server_.Page("/" + page.Name(), page.Content(), page.ContentType());
        Form().wbMyBrowser.BeforeNavigate2.Add([this](BeforeNavigate2Event& event) {
            const std::size_t mark = event.URL.find('?');
            if (!event.PostData.empty()) {
                announced_ = event.PostData;
            } else if (mark != std::string::npos) {
                announced_ = event.URL.substr(mark + 1);
            }
        });
    }

    /// The bodies or queries that came from forms of the page.
    std::vector<std::string> Submissions(const FormPage& page)
    {
        std::vector<std::string> found;
        for (const Request& request : server_.RequestsTo("/" + page.Get("to", kDefaultAction))) {
            if (page.IsPost() && request.Method == "POST") found.push_back(WithPlainBoundary(request));
            if (!page.IsPost() && !request.Query.empty()) found.push_back(request.Query);
        }
        return found;
    }

    static std::string WithPlainBoundary(const Request& request)
    {
        std::string body = request.Body;
        const std::size_t at = request.ContentType.find("boundary=");
        if (at == std::string::npos) return body;
        const std::string boundary = request.ContentType.substr(at + 9);
        for (std::size_t i = 0; (i = body.find(boundary, i)) != std::string::npos; ++i) {
            body.replace(i, boundary.size(), "B");
        }
        return body;
    }

    /// What the user does ahead of the submission.
    void FillIn(const FormPage& page)
    {
        for (const auto& [key, text] : page.Lines()) {
            const std::size_t equals = text.find(" = ");
            if (key == "type") Type(text.substr(0, equals), text.substr(equals + 3));
            if (key == "run") Script(text + "; 1");
        }
    }

    void Submit(const FormPage& page)
    {
        const std::string how = page.Get("submit");
        const std::string what = how.substr(how.find(' ') + 1);
        if (how.starts_with("click ")) {
            Click(what);
        } else if (how.starts_with("enter ")) {
            Script("document.querySelector('" + what + "').focus(); 1");
            Key("Return");
        } else {
            Script(what + "; 1");
        }
    }

    bool WaitForSubmission(const FormPage& page, std::size_t count)
    {
        return RunUntil([&] { return Submissions(page).size() >= count; }, "the submission");
    }

    /// Visits the page with Auto Record on and submits its form. With "Yes" the record is opened in the
    /// editor, which the test has to close.
    void Record(const FormPage& page, const std::string& answer = "No")
    {
        if (!Form().mnuAutoRecord.Checked()) Press("cmdRecord");
        announced_.clear();
        Go(server_.Url("/" + page.Name()));
        FillIn(page);
        if (page.Recorded() != "none") Expect({.text = kRecordQuestion, .button = answer});
        const std::size_t before = Completed().size();
        Submit(page);
        if (WaitForSubmission(page, 1)) RunUntil([&] { return Completed().size() > before; }, "the answer");
    }

    /// Visits the page again and does what is left to do by hand.
    void PlayBack(const FormPage& page)
    {
        server_.ForgetRequests();
        TypeAddress(server_.Url("/" + page.Name()));
        const std::size_t before = Completed().size();
        Press("cmdPlayback");
        if (page.IsPlayedBack()) return;
        RunUntil([&] { return Completed().size() > before; }, "the page");
        if (page.IsLeftAlone()) {
            FillIn(page);
            Expect({.text = kRecordQuestion, .button = "No"});
        }
        Submit(page);
    }

    std::string announced_;
};

class Pages : public PagesRun, public testing::WithParamInterface<FormPage> {};

TEST_P(Pages, AreRecordedAndPlayedBack)
{
    const FormPage& page = GetParam();
    Record(page);
    ASSERT_EQ(Submissions(page), std::vector{page.Received()});
    EXPECT_EQ(announced_, page.Announced());
    ASSERT_EQ(Form().ListView1.Count(), page.Recorded() == "none" ? 0 : 1);
    if (page.Recorded() == "none") return;
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), page.Recorded());
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Url"), server_.Url("/" + page.Name()));

    MoveToPermanent();
    Press("cmdPrompt");
    PlayBack(page);
    WaitForSubmission(page, 1);
    EXPECT_EQ(Submissions(page), std::vector{page.PlayedBack()});
}

TEST_F(PagesRun, ASurveyOverThreePagesIsPlayedBackAsOneChain)
{
    const std::vector<FormPage> survey{PageOf("site-survey-1.html"), PageOf("site-survey-2.html"),
                                       PageOf("site-survey-3.html")};
    for (const FormPage& page : survey) {
        server_.ForgetRequests();
        Record(page);
        MoveToPermanent();
    }
    Press("cmdPrompt");
    PlayBack(survey.front());
    WaitForSubmission(survey.back(), 1);
    for (const FormPage& page : survey) EXPECT_EQ(Submissions(page), std::vector{page.Received()});
}

TEST_F(PagesRun, ARecordIsEditedKeptAndPlayedByTheNextRunAsTheUserAllows)
{
    const FormPage& forum = PageOf("site-forum.html");
    const sigc::connection save = Glib::signal_timeout().connect(
        [&] {
            if (!Form().Edit().Visible()) return true;
            Form().Edit().cmdOK.Click.Raise();
            return false;
        },
        20);
    Record(forum, "Yes");
    MoveToPermanent();
    Restart();
    Press("cmdRecord");
    Press("cmdHideRecord");
    SelectRow("lvwPermanent", 1);
    server_.ForgetRequests();
    Expect({.text = "Do you want to go to this form?", .button = "Yes"});
    Expect({.text = "Do you want to auto fill-in this form", .button = "Cancel"});
    Press("cmdFill");
    RunUntil([&] { return AllAnswered(); }, "the questions");
    EXPECT_EQ(Script("document.forms[0].subject.value"), "");

    Press("cmdAutoClick");
    Expect({.text = "Do you want to auto fill-in this form", .button = "Ok"});
    Go(server_.Url("/site-forum.html"));
    EXPECT_EQ(Script("document.forms[0].subject.value"), "Re: <b>Überraschung</b> & more");
    EXPECT_TRUE(Submissions(forum).empty());
    Submit(forum);
    WaitForSubmission(forum, 1);
    EXPECT_EQ(Submissions(forum), std::vector{forum.Received()});
    EXPECT_EQ(Form().ListView1.Count(), 0) << "what was filled in is not recorded again";
}

INSTANTIATE_TEST_SUITE_P(Each, Pages, testing::ValuesIn(TestedPages()), [](const auto& page) {
    std::string name = fs::path(page.param.Name()).stem();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
}  // namespace velmora::test
