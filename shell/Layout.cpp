#include <cmath>
#include <exception>

#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::Form_Resize()
{
    if (ScaleWidth() == 0 && ScaleHeight() == 0) return;
    try {
        // 520, 400, 500 and 250 are what stays free beside a control, the window's own frame included; 1700 what
        // stays free above and below the page. docs/desktop.md takes them apart.
        txtUrl.Width = std::nearbyint(Width() - lblUrl.Width() - 520);
        wbMyBrowser.Width = Width() - 400;
        wbMyBrowser.Height = Height() - Frame1.Height() - SSTab1.Height() - SSTab1.TabHeight() - 1700;
        SSTab1.Top = wbMyBrowser.Top() + wbMyBrowser.Height() + 200;
        SSTab1.Width = Width() - cmdEdit.Width() - 500;
        lvwPermanent.Width = SSTab1.Width() - 250;
        ListView1.Width = SSTab1.Width() - 250;
        cmdEdit.Top = SSTab1.Top();
        cmdDelete.Top = cmdEdit.Top() + cmdEdit.Height() + 100;
        cmdSave.Top = cmdDelete.Top() + cmdDelete.Height() + 100;
        cmdFill.Top = cmdSave.Top() + cmdSave.Height() + 100;
        for (CommandButton* button : {&cmdEdit, &cmdDelete, &cmdSave, &cmdFill}) {
            button->Left = SSTab1.Left() + SSTab1.Width() + 100;
        }
        txtUrl.SetFocus();
        StatusBar1.Panels(1).Width = Width() - 2100;
        StatusBar1.Panels(2).Width = 2100;
    } catch (const std::exception&) {
        // A window too small for its controls, or not visible yet: the next pass puts it right.
    }
}

void frmBrowser::mnuHideRecord_Click()
{
    if (mnuHideRecord.Checked()) {
        mnuHideRecord.Checked = false;
        cmdHideRecord.Caption = "Hide Record";
        ShowRecordPanel();
    } else {
        mnuHideRecord.Checked = true;
        cmdHideRecord.Caption = "Show Record";
        HideRecordPanel();
    }
    Form_Resize();
}

void frmBrowser::ShowRecordPanel()
{
    SSTab1.Height = 2895;
    SSTab1.TabHeight = 300;
    SSTab1.Visible = true;
    for (CommandButton* button : {&cmdEdit, &cmdDelete, &cmdSave, &cmdFill}) button->Visible = true;
}

void frmBrowser::HideRecordPanel()
{
    SSTab1.Visible = false;
    SSTab1.Height = 0;
    SSTab1.TabHeight = 1;
    for (CommandButton* button : {&cmdEdit, &cmdDelete, &cmdSave, &cmdFill}) button->Visible = false;
}

void frmBrowser::AutoHideRecords()
{
    if (!mnuHideRecord.Checked() && mnuAutoHide.Checked()) mnuHideRecord_Click();
}

}  // namespace velmora
