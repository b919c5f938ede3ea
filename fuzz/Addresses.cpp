// Two addresses, a line each: cleaned up, taken apart, compared, and compared as a submission with a noted action.
#include "fuzz/Fuzz.h"
#include "platform/document/Address.h"
#include "platform/text/Search.h"
#include "platform/text/Utf8.h"

namespace velmora::fuzz {

namespace {

void ExpectPartsFit(const std::string& url)
{
    const std::string loadable = LoadableAddress(url);
    Expect(!loadable.empty() && LoadableAddress(loadable) == loadable, "what can be loaded is loaded as it is");
    Expect(url.starts_with(WithoutFragment(url)), "an address begins with its part before the fragment");
    Expect(WithoutQuery(url) == WithoutFragment(WithoutQuery(url)), "without its query it has no fragment either");
    const std::string key = frmBrowser::StripQuery(url);
    Expect(frmBrowser::StripQuery(key) == key, "a key is its own key");
    std::string file = url;
    file = frmBrowser::GetUrlFileName(file);
    Expect(file.find_first_of("/?") == std::string::npos, "a file name has no folder and no query");
    const std::string session = frmBrowser::MakeSessionFileName(url);
    const std::size_t characters = CharactersOf(url).size();
    Expect(session.size() == (characters > 7 ? characters - 7 : 0), "a session file's name has a byte each");
    for (const char c : session) Expect(c == '_' || IsAsciiLetterOrDigit(static_cast<unsigned char>(c)), "a plain one");
}

/// The action of the record that comes of a submission to an address after a form was noted; "none" without one.
std::string RecordedAction(const std::string& url, const std::string& noted)
{
    static Program& program = *new Program;
    frmBrowser& browser = program.browser;
    browser.mnuAutoRecord.Checked = true;
    browser.gbRecordArmed = true;
    browser.gstrFormAction = {noted};
    browser.gstrFormActionPage = {"http://h/"};
    browser.glngNoOfFormAction = 1;
    BeforeNavigate2Event event{browser.wbMyBrowser, url, 0, "", "x", ""};
    browser.CaptureSubmission(event);
    if (browser.ListView1.Count() == 0) return "none";
    ListItem& row = browser.ListView1.Item(1);
    const std::string action = row.SubItem("Action");
    browser.ListView1.Remove(row);
    program.dialogs.Shown.clear();
    return action;
}

}  // namespace

void Try(const std::string& input)
{
    const auto lines = PiecesOf(input, '\n');
    const std::string& url = lines.front();
    const std::string& noted = lines.back();
    ExpectPartsFit(url);
    std::string a = url;
    std::string b = noted;
    const bool isMatch = frmBrowser::UrlsMatch(a, b);
    Expect(a == url || a == LowerCase(url), "a comparison changes nothing but the case");
    Expect(frmBrowser::UrlsMatch(b, a) == isMatch, "either way round");
    // The mark of a page with frames lets any body through, and no other comparison.
    if (noted.empty() || LowerCase(noted) == "*frame*") return;
    Expect(RecordedAction(url, noted) == (isMatch ? a : "none"), "a submission is compared in the same way");
}

}  // namespace velmora::fuzz
