#include <exception>

#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::mnuBlock_Click() { mnuBlock.Checked = !mnuBlock.Checked(); }

void frmBrowser::wbMyBrowser_NewWindow2(bool& Cancel)
{
    const auto askToBlock = [this] {
        return platform_.dialogs.MsgBox("Pop-up window is required, do you want to block pop-up?",
                                        Buttons::YesNoYesIsSafe) == Answer::Yes;
    };
    try {
        Cancel = Cancel || mnuBlock.Checked() || askToBlock();
        if (Cancel) ++glngNoOfPopupBlocked;
        StatusBar1.Panels(2).Text =
            Cancel ? std::to_string(glngNoOfPopupBlocked) + " Pop-up is blocked" : "Pop-up is not blocked";
    } catch (const std::exception&) {
        // A window that nobody could decide on does not open.
        Cancel = true;
    }
}

}  // namespace velmora
