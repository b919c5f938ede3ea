#include <exception>
#include <string_view>

#include "platform/Files.h"
#include "platform/text/Search.h"
#include "records/frmHome.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

bool IsXmlName(const std::string& name)
{
    return name.size() >= 4 && EqualIgnoringCase(std::string_view(name).substr(name.size() - 4), ".xml");
}

}  // namespace

void frmBrowser::LoadPermanentSession()
{
    glngNoOfPermanentSession = 0;
    for (const std::string& name : ListSessionFolder()) {
        LoadSessionFile(name);
        platform_.dialogs.DoEvents();
    }
    if (lvwPermanent.Count() > 0) lvwPermanent.Select(&lvwPermanent.Item(1));
    ShowStatus(std::to_string(glngNoOfPermanentSession) + " Permanent Record");
}

std::vector<std::string> frmBrowser::ListSessionFolder()
{
    std::vector<std::string> files;
    try {
        files = platform_.files.List(gstrSessionPath);
        if (platform_.files.CanWrite(gstrSessionPath)) return files;
    } catch (const std::exception&) {
        // Whatever stands in the way, what the user has to know is the same.
    }
    platform_.dialogs.MsgBox("The session folder cannot be used: " + gstrSessionPath +
                                 "\nRecords will not be kept. Make it a folder that you may list and write, then start "
                                 "Velmora again.",
                             Buttons::Ok, Icon::Exclamation);
    return files;
}

void frmBrowser::LoadSessionFile(const std::string& name)
{
    if (!IsXmlName(name)) return;
    std::string text;
    if (!ReadTextFile(gstrSessionPath + "/" + name, text)) return;
    RecordItem record;
    ParseSessionXml(text, record);
    if (record.Type == kTypeHome) {
        Home().txtHome.Text = GetXmlElement(text, "Home");
    } else {
        AddRecordItem(lvwPermanent, record);
        ++glngNoOfPermanentSession;
    }
}

void frmBrowser::cmdSave_Click()
{
    ListView& table = CurrentRecordList();
    RecordItem record;
    if (!ReadSelectedRecord(table, record)) {
        AskForSelection();
        return;
    }
    StoreRecord(lvwPermanent, StripQuery(record.Url), record);
    WriteSessionFile(record);
    // By the row itself and not by its key: a row may be without one.
    if (ListItem* const row = table.SelectedItem()) table.Remove(*row);
    AutoHideRecords();
}

void frmBrowser::cmdDelete_Click()
{
    ListView& table = CurrentRecordList();
    ListItem* const row = table.SelectedItem();
    if (!row) {
        AskForSelection();
        return;
    }
    if (glngCurTab == 0) {
        const Answer answer = platform_.dialogs.MsgBox("Are you sure to delete this permanent record session?",
                                                       Buttons::YesNo, Icon::None, row->Text());
        if (answer != Answer::Yes || !DeleteSessionFile(row->SubItem("Url"))) {
            ShowStatus("Delete action is aborted!");
            return;
        }
        --glngNoOfPermanentSession;
    }
    table.Remove(*row);
    ShowStatus("Record session is deleted!");
}

bool frmBrowser::DeleteSessionFile(const std::string& Url)
{
    try {
        platform_.files.Delete(SessionFilePath(Url));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace velmora
