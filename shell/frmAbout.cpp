#include "shell/frmAbout.h"

namespace velmora {

frmAbout::frmAbout(const std::string& website, const std::string& contact)
{
    Caption = "About Velmora";
    SetInnerSize(5640, 3885);
    Left = 5250;
    Top = 4095;
    lblVersion.Caption = "              version " VELMORA_VERSION;
    lblUrl.Caption = "Url:     " + website;
    lblEmail.Caption = "Email: " + contact;
    imgLogo.Move(240, 120, 1410, 1200);
    lblProduct.Move(1800, 360, 2295, 255);
    lblVersion.Move(1800, 600, 2175, 255);
    lblContact.Move(240, 3000, 3735, 255);
    lblUrl.Move(240, 3240, 3735, 255);
    lblEmail.Move(240, 3480, 3735, 255);
    cmdOK.Move(4080, 240, 1335, 375);
    imgLogo.AccessibleName = "The Velmora logo";
    cmdOK.TabIndex = 0;
    cmdOK.Default = true;
    cmdOK.Cancel = true;
    cmdOK.Click.Add([this] { cmdOK_Click(); });
    CloseRequested.Add([this] { cmdOK_Click(); });
}

void frmAbout::cmdOK_Click() { Visible = false; }

}  // namespace velmora
