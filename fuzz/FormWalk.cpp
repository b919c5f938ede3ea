// A page and a record, a line each: "action", "post data", then "Faction id" for a form, "Rframe" for a frame that
// refuses, "Iframe" for one that does not, and "kname=value" for an element of that kind, in capitals if it is ticked.
#include "fuzz/Fuzz.h"
#include "platform/text/Utf8.h"
#include "tests/support/CannedPages.h"

namespace velmora::fuzz {

namespace {

constexpr const char* kTypes[] = {"text",       "password",        "textarea", "radio", "checkbox",
                                  "select-one", "select-multiple", "submit",   "image", "TEXT"};

test::CannedElement ElementOf(const std::string& line)
{
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string value = line.substr(std::min(equals + 1, line.size()));
    const auto kind = static_cast<std::size_t>(line[0] & 0x1F);
    test::CannedElement element(kTypes[kind % std::size(kTypes)], line.substr(1, equals - 1), value, line[0] < 'a');
    element.src = value;
    element.unreadable = value == "?";
    for (const std::string& option : PiecesOf(value, ',')) element.options.push_back({option, value, option < "M"});
    return element;
}

test::CannedPage PageOf(const std::vector<std::string>& lines)
{
    test::CannedPage top;
    test::CannedPage* page = &top;
    for (std::size_t i = 2; i < lines.size(); ++i) {
        const std::string& line = lines[i];
        if (line.empty()) continue;
        if (line[0] == 'F') {
            const std::size_t blank = std::min(line.find(' '), line.size());
            page->forms.push_back({.action = line.substr(1, blank - 1), .id = line.substr(blank)});
        } else if (line[0] == 'R' || line[0] == 'I') {
            page = &top.frames.emplace_back(test::CannedPage{.refuses = line[0] == 'R'});
        } else if (!page->forms.empty()) {
            page->forms.back().elements.push_back(ElementOf(line));
        }
    }
    return top;
}

}  // namespace

void Try(const std::string& input)
{
    auto lines = PiecesOf(input, '\n');
    lines.resize(std::max<std::size_t>(lines.size(), 2));
    static Program& program = *new Program;
    frmBrowser& browser = program.browser;
    browser.gstrFieldNames = browser.gstrFieldValues = {};
    const auto journal = std::make_shared<test::Journal>();
    test::CannedFrame page(PageOf(lines), journal);
    std::string action = lines[0];
    std::string read = lines[1];
    browser.ProcessDocument(page, "READ", action, read);
    Expect(journal->empty(), "reading a form changes nothing in it");
    std::string again = read;
    browser.ProcessDocument(page, "READ", action, again);
    Expect(again == read, "a second look sees the same");

    browser.ProcessDocument(page, "WRITE", action, again);
    Expect(again == read, "filling a form leaves the record alone");
    if (browser.gstrFieldNames.empty()) Expect(journal->empty(), "a record without a field fills nothing");
    for (const std::string& line : *journal) {
        const bool isEntry = line.find(" := ") != std::string::npos && !line.starts_with("c");  // check, choose, click
        bool isRecorded = !isEntry || line.ends_with(" := ");
        for (const std::string& value : browser.gstrFieldValues) {
            isRecorded = isRecorded || line.ends_with(" := " + frmBrowser::DecodeFieldText(value));
        }
        Expect(isRecorded, "nothing is entered that is not in the record");
    }
}

}  // namespace velmora::fuzz
