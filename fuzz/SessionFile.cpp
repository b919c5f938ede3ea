// A file in the session folder: read at the start, edited, deleted.
#include "editor/frmEdit.h"
#include "fuzz/Fuzz.h"
#include "platform/text/CodePage.h"
#include "records/frmBookmark.h"
#include "records/frmHome.h"

namespace velmora::fuzz {

namespace {

RecordItem RecordOf(const std::string& bytes)
{
    RecordItem record;
    frmBrowser::ParseSessionXml(TextOfBytes(bytes), record);
    return record;
}

}  // namespace

void Try(const std::string& input)
{
    static Program& program = *new Program;
    frmBrowser& browser = program.browser;
    if (browser.gstrSessionPath.empty()) browser.Form_Load();
    while (browser.lvwPermanent.Count() > 0) browser.lvwPermanent.Remove(browser.lvwPermanent.Item(1));
    program.files.Texts = {{"/app/session/record.xml", input}};
    program.dialogs.Shown.clear();
    browser.LoadPermanentSession();
    const RecordItem record = RecordOf(input);
    const bool isRecord = !input.empty() && record.Type != kTypeHome;
    Expect(browser.lvwPermanent.Count() == (isRecord ? 1 : 0), "a file with something in it is a record");
    if (!isRecord) return;
    Expect(program.files.Texts.size() == 1, "a start writes nothing");

    program.dialogs.Visits = {[](Window& dialog) {
        if (auto* const editor = dynamic_cast<frmEdit*>(&dialog)) editor->cmdOK.Click.Raise();
        if (auto* const bookmark = dynamic_cast<frmBookmark*>(&dialog)) bookmark->cmdOK.Click.Raise();
    }};
    browser.cmdEdit.Click.Raise();
    RecordItem row;
    Expect(frmBrowser::ReadSelectedRecord(browser.lvwPermanent, row), "the record is selected still");
    const bool isKnown = row.Type == kTypeForm || row.Type == kTypeBookmark;
    const std::string path = browser.SessionFilePath(row.Url);
    if (isKnown) Expect(program.files.Texts[path] == test::FileOf(row), "what was saved is what the row says");
    const RecordItem again = RecordOf(test::FileOf(row));
    if (again == row) Expect(test::FileOf(again) == test::FileOf(row), "and what the next start reads");

    program.dialogs.Answers = {Answer::Yes};
    browser.cmdDelete.Click.Raise();
    Expect(browser.lvwPermanent.Count() == 0 && !program.files.Texts.contains(path), "deleted is deleted");
}

}  // namespace velmora::fuzz
