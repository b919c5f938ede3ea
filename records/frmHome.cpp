#include "records/frmHome.h"

namespace velmora {

frmHome::frmHome(const std::string& home)
{
    Caption = "Default Home Page Setup";
    SetInnerSize(7170, 1410);
    lblHome.Move(120, 300, 1755, 255);
    txtHome.Move(1980, 240, 5070, 375);
    cmdOK.Move(4500, 870, 1215, 375);
    cmdCancel.Move(5835, 870, 1215, 375);
    txtHome.Text = home;
    txtHome.AccessibleName = "Default home page";
    txtHome.TabIndex = 0;
    cmdOK.TabIndex = 1;
    cmdCancel.TabIndex = 2;
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
    FirstFocus = &txtHome;
    cmdOK.Click.Add([this] { cmdOK_Click(); });
    cmdCancel.Click.Add([this] { cmdCancel_Click(); });
    CloseRequested.Add([this] { cmdCancel_Click(); });
}

void frmHome::cmdOK_Click()
{
    bSaveFlag = true;
    Visible = false;
}

void frmHome::cmdCancel_Click() { Visible = false; }

}  // namespace velmora
