#include <exception>

#include "platform/text/Search.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::cmdPlayback_Click()
{
    glngNoOfFormAction = 0;
    gstrCurMode = "Playback";
    gbRecordArmed = true;
    gstrLastFilledUrl.clear();
    wbMyBrowser.Navigate(txtUrl.Text());
    AutoHideRecords();
}

void frmBrowser::cmdFill_Click()
{
    glngNoOfFormAction = 0;
    RecordItem record;
    if (!ReadSelectedRecord(CurrentRecordList(), record)) {
        AskForSelection();
        return;
    }
    const std::string prompt =
        record.Type == kTypeForm ? "Do you want to go to this form?" : "Do you want to go to this address?";
    const Answer answer = platform_.dialogs.MsgBox(prompt, Buttons::YesNo, Icon::None, "Address: " + record.Url);
    if (answer != Answer::Yes) return;
    txtUrl.Text = record.Url;
    cmdPlayback_Click();
    AutoHideRecords();
}

std::vector<RecordItem> frmBrowser::FormRecordsOf(const std::string& URL) const
{
    std::vector<RecordItem> records;
    for (const ListItem* row : lvwPermanent.RowsWith(URL)) {
        if (row->SubItem("Type") == kTypeForm) ReadRecordItem(*row, records.emplace_back());
    }
    return records;
}

bool frmBrowser::HasRecordFor(BrowserObject& pDisp, const std::string& URL)
{
    try {
        const auto document = pDisp.Document();
        for (const RecordItem& record : FormRecordsOf(URL)) {
            for (int j = 0; j < document->FormsLength(); ++j) {
                std::string recorded = record.Action;
                std::string action = document->Forms(j)->Action();
                if (action == "[object]" || UrlsMatch(recorded, action)) return true;
            }
        }
    } catch (const std::exception&) {
        // A document that cannot be read is not filled either.
    }
    return false;
}

void frmBrowser::PlayDocument(BrowserObject& pDisp, const std::string& URL)
{
    if (gstrCurMode != "Playback") return;
    if (!mnuManualClick.Checked() && !mnuAutoClick.Checked()) return;
    // A frame without an address of its own has one that every site's frames have: it is nobody's.
    if (LowerCase(URL.substr(0, 6)) == "about:") return;
    if (EqualIgnoringCase(gstrLastFilledUrl, URL)) return;
    for (RecordItem& record : FormRecordsOf(URL)) {
        if (mnuPromptFill.Checked()) {
            const Answer answer = platform_.dialogs.MsgBox("Do you want to auto fill-in this form", Buttons::OkCancel,
                                                           Icon::None, "Session=" + record.Session);
            if (answer != Answer::Ok) continue;
        }
        if (HasPair(record.Postdata)) ProcessDocument(pDisp, "WRITE", record.Action, record.Postdata);
        return;
    }
}

}  // namespace velmora
