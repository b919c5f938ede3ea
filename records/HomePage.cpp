#include "platform/Files.h"
#include "records/frmHome.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::mnuHome_Click()
{
    frmHome& dialog = Home();
    CenterForm(dialog);
    dialog.bSaveFlag = false;
    platform_.dialogs.ShowModal(dialog);
    if (!dialog.bSaveFlag) {
        ShowStatus({});
        return;
    }
    WriteTextFile(gstrSessionPath + "/Velmora.xml", BuildHomeXml(dialog.txtHome.Text()));
    ShowStatus("Setting is updated");
}

}  // namespace velmora
