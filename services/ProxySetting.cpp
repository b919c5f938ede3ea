#include "platform/Dialogs.h"
#include "services/frmProxy.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::mnuProxy_Click()
{
    frmProxy& dialog = ProxyDialog();
    CenterForm(dialog);
    platform_.dialogs.ShowModal(dialog);
}

}  // namespace velmora
