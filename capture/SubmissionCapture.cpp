#include <utility>

#include "platform/CodePage.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::CaptureSubmission(BeforeNavigate2Event& event)
{
    if (!gbRecordArmed || !mnuAutoRecord.Checked()) return;
    if (event.PostData.empty()) {
        CaptureQuery(event);
    } else {
        CapturePost(event);
    }
}

bool frmBrowser::IsNotedForm(int i, std::string& strAction)
{
    std::string& noted = gstrFormAction[static_cast<std::size_t>(i)];
    return !noted.empty() && UrlsMatch(strAction, noted);
}

void frmBrowser::CapturePost(BeforeNavigate2Event& event)
{
    std::string strAction = event.URL;
    for (int i = 0; i < glngNoOfFormAction; ++i) {
        if (IsNotedForm(i, strAction) || gstrFormAction[static_cast<std::size_t>(i)] == "*frame*") {
            RecordSubmission(event, i, strAction, TextOfBytes(event.PostData));
            return;
        }
    }
}

void frmBrowser::CaptureQuery(BeforeNavigate2Event& event)
{
    const std::size_t mark = event.URL.find('?');
    if (mark == std::string::npos) return;
    for (int i = 0; i < glngNoOfFormAction; ++i) {
        // Taken afresh each time: a comparison may leave it in lower case.
        std::string strAction = event.URL.substr(0, mark);
        if (IsNotedForm(i, strAction)) {
            RecordSubmission(event, i, strAction, event.URL.substr(mark + 1));
            return;
        }
    }
}

void frmBrowser::RecordSubmission(BeforeNavigate2Event& event, int i, std::string& strAction, std::string strPostdata)
{
    // A copy, since other documents may complete, and the index grow, while the user is asked.
    const std::string strPageUrl = gstrFormActionPage[static_cast<std::size_t>(i)];
    AddTemporaryRecord(event.pDisp, strPageUrl, strAction, event.TargetFrameName, strPostdata, event.Headers);
    glngNoOfFormAction = 0;
}

void frmBrowser::AddTemporaryRecord(BrowserObject& pDisp, const std::string& strPageUrl, std::string& strAction,
                                    const std::string& strFrame, std::string& strPostdata, const std::string& strHeader)
{
    ProcessDocument(pDisp, "READ", strAction, strPostdata);
    const std::string number = std::to_string(++lngSessionId);
    const std::string key = "K" + number;
    ListItem& row = ListView1.Add();
    row.SetKey(key);
    row.SetText("Session" + number);
    row.AddSubItem("Type", kTypeForm);
    row.AddSubItem("Url", strPageUrl);
    row.AddSubItem("Action", strAction);
    row.AddSubItem("Postdata", strPostdata);
    row.AddSubItem("Header", strHeader);
    row.AddSubItem("Frame", strFrame);

    const Answer answer =
        platform_.dialogs.MsgBox("A temporary record is created, do you want to view/edit it now?", Buttons::YesNo);
    // Two frames may submit at once. While one record is being edited another one's row must not take
    // the selection, by which the editor finds its record again.
    if (answer != Answer::Yes || EditorIsOpen()) return;
    SSTab1.Tab = 1;
    ListView1.Select(ListView1.Find(key));
    cmdEdit_Click();
}

}  // namespace velmora
