#include "records/frmBookmark.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::cmdBookmark_Click()
{
    if (!strLastUrl.empty()) RecordBookmark();
    glngNoOfFormAction = 0;
}

void frmBrowser::RecordBookmark()
{
    RecordItem record;
    record.Type = kTypeBookmark;
    record.Session = "*sysgen*";
    record.Url = strLastUrl;
    record.Action = record.Url;
    const std::string key = StripQuery(record.Url);
    SSTab1.Tab = 0;
    StoreRecord(lvwPermanent, key, record);
    WriteSessionFile(record);
    ShowStatus("Bookmark (" + record.Session + ") is recorded!");
    lvwPermanent.Select(lvwPermanent.Find(key.empty() ? record.Url : key));
    cmdEdit_Click();
}

void frmBrowser::EditBookmarkRecord(RecordItem& record)
{
    frmBookmark& dialog = Bookmark();
    dialog.bSaveFlag = false;
    dialog.txtSession.Text = record.Session;
    dialog.txtUrl.Text = record.Url;
    dialog.txtAction.Text = record.Action;
    CenterForm(dialog);
    platform_.dialogs.ShowModal(dialog);
    if (!dialog.bSaveFlag) {
        ShowStatus("Modification is cancelled!");
        return;
    }
    record.Session = dialog.txtSession.Text();
    record.Url = dialog.txtUrl.Text();
    record.Action = dialog.txtAction.Text();
    record.Postdata.clear();
    record.Header.clear();
    record.Frame.clear();
    UpdateSelectedRecord(lvwPermanent, record);
    WriteSessionFile(record);
    ShowStatus("Record session is modified!");
}

}  // namespace velmora
