#include "editor/frmEdit.h"
#include "records/frmBookmark.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::cmdEdit_Click()
{
    ListView& table = CurrentRecordList();
    RecordItem record;
    if (!ReadSelectedRecord(table, record)) {
        AskForSelection();
        return;
    }
    if (record.Type == kTypeForm) {
        EditFormRecord(table, record);
    } else if (record.Type == kTypeBookmark) {
        EditBookmarkRecord(record);
    }
}

void frmBrowser::EditFormRecord(ListView& table, RecordItem& record)
{
    frmEdit& dialog = Edit();
    dialog.bEditFlag = false;
    dialog.bSavePermanent = false;
    dialog.txtSession.Text = record.Session;
    dialog.txtUrl.Text = record.Url;
    dialog.txtAction.Text = record.Action;
    const bool temporary = glngCurTab != 0;
    dialog.cmdPermanentOK.Enabled = temporary;
    dialog.Caption = temporary ? "Edit Temporary Record Session" : "Edit Permanent Record Session";
    CenterForm(dialog);
    const std::size_t fields = ShowFields(record);
    platform_.dialogs.ShowModal(dialog);
    if (!dialog.bEditFlag) {
        ShowStatus("Modification is cancelled!");
        return;
    }
    // A record without a single pair shows no field, and keeps whatever it has.
    if (fields > 0) record.Postdata = EditedPostdata(fields);
    record.Session = dialog.txtSession.Text();
    record.Url = dialog.txtUrl.Text();
    record.Action = dialog.txtAction.Text();
    UpdateSelectedRecord(table, record);
    if (!temporary) WriteSessionFile(record);
    ShowStatus("Record session is modified!");
    if (dialog.bSavePermanent) cmdSave_Click();
}

std::size_t frmBrowser::ShowFields(const RecordItem& record)
{
    frmEdit& dialog = Edit();
    SplitPostdata(record.Postdata, gstrFieldNames, gstrFieldValues);
    // Without a pair the split leaves the fields of another record in the table.
    const std::size_t fields = HasPair(record.Postdata) ? gstrFieldNames.size() : 0;
    for (std::size_t i = 0; i < frmEdit::kFields; ++i) {
        const bool isField = i < fields;
        dialog.lblName[i].Caption = isField ? gstrFieldNames[i] : "Blank";
        dialog.txtValue[i].AccessibleName = dialog.lblName[i].Caption();
        dialog.txtValue[i].Text = isField ? DecodeFieldText(gstrFieldValues[i]) : std::string();
        dialog.txtValue[i].Enabled = isField;
    }
    dialog.SSTab1.Tab = 0;
    return fields;
}

std::string frmBrowser::EditedPostdata(std::size_t fields)
{
    frmEdit& dialog = Edit();
    std::string postdata;
    for (std::size_t i = 0; i < fields; ++i) {
        if (!postdata.empty()) postdata += '&';
        postdata += dialog.lblName[i].Caption() + "=" + EncodeFieldText(dialog.txtValue[i].Text());
    }
    return postdata;
}

}  // namespace velmora
