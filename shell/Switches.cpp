#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::mnuAutoRecord_Click()
{
    mnuAutoRecord.Checked = !mnuAutoRecord.Checked();
    cmdRecord.Caption = mnuAutoRecord.Checked() ? "Auto Record On" : "Auto Record Off";
}

void frmBrowser::mnuPromptFill_Click()
{
    mnuPromptFill.Checked = !mnuPromptFill.Checked();
    cmdPrompt.Caption = mnuPromptFill.Checked() ? "Prompt User is On" : "Prompt User is Off";
}

void frmBrowser::mnuAutoHide_Click()
{
    mnuAutoHide.Checked = !mnuAutoHide.Checked();
    cmdAutoHide.Caption = mnuAutoHide.Checked() ? "Auto Hide is On" : "Auto Hide is Off";
}

// The three fill mode items are no radio buttons: a click on the one that is checked moves on to
// another mode, so that the button in the top row goes back and forth.

void frmBrowser::mnuAutoClick_Click()
{
    if (!mnuAutoClick.Checked()) {
        mnuAutoClick.Checked = true;
        cmdAutoClick.Caption = "Auto Click is On";
        mnuManualClick.Checked = false;
        mnuNoFill.Checked = false;
    } else {
        mnuAutoClick.Checked = false;
        cmdAutoClick.Caption = "Auto Click is Off";
        mnuManualClick.Checked = true;
    }
}

void frmBrowser::mnuManualClick_Click()
{
    if (!mnuManualClick.Checked()) {
        mnuManualClick.Checked = true;
        mnuAutoClick.Checked = false;
        cmdAutoClick.Caption = "Auto Click is Off";
        mnuNoFill.Checked = false;
    } else {
        mnuManualClick.Checked = false;
        mnuAutoClick.Checked = true;
        cmdAutoClick.Caption = "Auto Click is On";
    }
}

void frmBrowser::mnuNoFill_Click()
{
    if (!mnuNoFill.Checked()) {
        mnuNoFill.Checked = true;
        mnuManualClick.Checked = false;
        mnuAutoClick.Checked = false;
        cmdAutoClick.Caption = "Auto Click is Off";
    } else {
        mnuNoFill.Checked = false;
        mnuManualClick_Click();
    }
}

}  // namespace velmora
