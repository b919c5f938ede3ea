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
//   frame      The target frame of the record; none if it is missing.
//   playback   What the server receives when the record is played back; the same as at first if it is
//              missing. "left alone": the form is not filled, so that it is recorded again.
//   to         The path of the request, "to.cgi" if it is missing.
//
// A page without such a comment belongs to another page.
#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <sstream>

#include "editor/frmEdit.h"
#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

namespace fs = std::filesystem;

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
    explicit FormPage(const fs::path& file) : content_(FileText(file))
    {
        ReadComment();
        const std::string charset = Get("charset", "utf-8");
        content_ = InCharset(content_, charset);
        type_ = "text/html; charset=" + charset;
    }

    const std::string& Content() const { return content_; }
    const std::string& ContentType() const { return type_; }
    const std::vector<std::pair<std::string, std::string>>& Lines() const { return lines_; }
    bool Has(const std::string& key) const { return Get(key, "-") != "-"; }
    std::string Get(const std::string& key, const std::string& otherwise = "") const
    {
        for (const auto& [name, text] : lines_) {
            if (name == key) return text;
        }
        return otherwise;
    }
    std::string Received() const { return Get(Has("get") ? "get" : "post"); }
    std::string Announced() const { return Get("announced", Received()); }
    bool IsLeftAlone() const { return Get("playback") == "left alone"; }

private:
    void ReadComment()
    {
        const std::size_t start = content_.find("<!--\n");
        if (start == std::string::npos) return;
        std::istringstream comment(content_.substr(start + 5, content_.find("-->", start) - start - 5));
        for (std::string line; std::getline(comment, line);) {
            if (line.starts_with(' ')) {
                lines_.back().second += line.substr(line.find_first_not_of(' '));
            } else {
                lines_.emplace_back(line.substr(0, line.find(':')), line.substr(line.find(": ") + 2));
            }
        }
        for (auto& [key, value] : lines_) {
            if (key != "run") value = WithControls(value);
        }
    }

    std::string content_;
    std::string type_;
    std::vector<std::pair<std::string, std::string>> lines_;
};

/// All pages by their names.
const std::map<std::string, FormPage>& AllPages()
{
    static const std::map<std::string, FormPage> pages = [] {
        std::map<std::string, FormPage> read;
        for (const auto& entry : fs::directory_iterator(VELMORA_TEST_PAGES)) {
            read.emplace(entry.path().filename(), entry.path());
        }
        return read;
    }();
    return pages;
}

class PagesRun : public DesktopTest {
protected:
    void SetUp() override
    {
        DesktopTest::SetUp();
        server_.Page("/to.cgi", "arrived");
        for (const auto& [name, page] : AllPages()) server_.Page("/" + name, page.Content(), page.ContentType());
        Form().wbMyBrowser.BeforeNavigate2.Add([this](BeforeNavigate2Event& event) {
            const std::size_t mark = event.URL.find('?');
            if (mark != std::string::npos) announced_ = event.URL.substr(mark + 1);
            if (!event.PostData.empty()) announced_ = event.PostData;
        });
    }

    static const FormPage& PageOf(const std::string& name) { return AllPages().at(name); }
    /// The bodies or queries that came from the page's form.
    std::vector<std::string> Submissions(const std::string& name)
    {
        const FormPage& page = PageOf(name);
        std::vector<std::string> found;
        for (const Request& request : server_.Requests()) {
            if (request.Path != "/" + page.Get("to", "to.cgi")) continue;
            if (!page.Has("get") && request.Method == "POST") found.push_back(WithPlainBoundary(request));
            if (page.Has("get") && !request.Query.empty()) found.push_back(request.Query);
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
    void FillIn(const std::string& name)
    {
        for (const auto& [key, text] : PageOf(name).Lines()) {
            const std::size_t equals = text.find(" = ");
            if (key == "type") Type(text.substr(0, equals), text.substr(equals + 3));
            if (key == "run") Script(text + "; 1");
        }
    }
    void Submit(const std::string& name)
    {
        const std::string how = PageOf(name).Get("submit");
        const std::string what = how.substr(how.find(' ') + 1);
        if (how.starts_with("click ")) return Click(what);
        if (how.starts_with("run ")) return void(Script(what + "; 1"));
        Script("document.querySelector('" + what + "').focus(); 1");
        Key("Return");
    }
    bool WaitForSubmission(const std::string& name)
    {
        return RunUntil([&] { return !Submissions(name).empty(); }, "the submission");
    }

    /// Visits the page with Auto Record on and submits its form. With "Yes" the record is opened in the
    /// editor, which the test has to close.
    void Record(const std::string& name, const std::string& answer = "No")
    {
        if (!Form().mnuAutoRecord.Checked()) Press("cmdRecord");
        Go(server_.Url("/" + name));
        FillIn(name);
        Expect({.text = kRecordQuestion, .button = answer});
        const std::size_t before = Completed().size();
        Submit(name);
        if (WaitForSubmission(name)) RunUntil([&] { return Completed().size() > before; }, "the answer");
    }
    /// Visits the page again and does what is left to do by hand.
    void PlayBack(const std::string& name)
    {
        const FormPage& page = PageOf(name);
        server_.ForgetRequests();
        if (!page.IsLeftAlone()) return SetOff(server_.Url("/" + name));
        Go(server_.Url("/" + name));
        FillIn(name);
        Expect({.text = kRecordQuestion, .button = "No"});
        Submit(name);
    }

    std::string announced_;
};

class Pages : public PagesRun, public testing::WithParamInterface<std::string> {};

TEST_P(Pages, AreRecordedAndPlayedBack)
{
    const FormPage& page = PageOf(GetParam());
    Record(GetParam());
    ASSERT_EQ(Submissions(GetParam()), std::vector{page.Received()});
    EXPECT_EQ(announced_, page.Announced());
    ASSERT_EQ(Form().ListView1.Count(), 1);
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Postdata"), page.Get("record", page.Announced()));
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Url"), server_.Url("/" + GetParam()));
    EXPECT_EQ(Form().ListView1.Item(1).SubItem("Frame"), page.Get("frame"));

    MoveToPermanent();
    Press("cmdPrompt");
    PlayBack(GetParam());
    WaitForSubmission(GetParam());
    const std::string same = page.Received();
    EXPECT_EQ(Submissions(GetParam()), std::vector{page.IsLeftAlone() ? same : page.Get("playback", same)});
}

TEST_F(PagesRun, ASurveyOverTwoPagesIsPlayedBackAsOneChain)
{
    const std::vector<std::string> survey{"site-survey-1.html", "site-survey-2.html"};
    for (const std::string& page : survey) {
        Record(page);
        MoveToPermanent();
    }
    Press("cmdPrompt");
    PlayBack(survey.front());
    WaitForSubmission(survey.back());
    for (const std::string& page : survey) EXPECT_EQ(Submissions(page), std::vector{PageOf(page).Received()});
}

TEST_F(PagesRun, ARecordIsEditedKeptAndPlayedByTheNextRunAsTheUserAllows)
{
    const std::string forum = "site-forum.html";
    InDialog(
        "Edit Temporary Record Session", [&] { Record(forum, "Yes"); },
        [this](Gtk::Window&) { Form().Edit().cmdOK.Click.Raise(); });
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
    Go(server_.Url("/" + forum));
    EXPECT_EQ(Script("document.forms[0].subject.value"), "Re: <b>Überraschung</b> & more");
    EXPECT_TRUE(Submissions(forum).empty());
    Submit(forum);
    WaitForSubmission(forum);
    EXPECT_EQ(Submissions(forum), std::vector{PageOf(forum).Received()});
    EXPECT_EQ(Form().ListView1.Count(), 0) << "what was filled in is not recorded again";
}

std::vector<std::string> TestedPages()
{
    std::vector<std::string> tested;
    for (const auto& [name, page] : AllPages()) {
        if (page.Has("submit")) tested.push_back(name);
    }
    return tested;
}

INSTANTIATE_TEST_SUITE_P(Each, Pages, testing::ValuesIn(TestedPages()), [](const auto& page) {
    std::string name = fs::path(page.param).stem();
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

}  // namespace
}  // namespace velmora::test
