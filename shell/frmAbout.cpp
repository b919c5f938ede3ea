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
    Arrange({{imgLogo, 240, 120, 1410, 1200},
             {lblProduct, 1800, 360, 2295, 255},
             {lblVersion, 1800, 600, 2175, 255},
             {lblContact, 240, 3000, 3735, 255},
             {lblUrl, 240, 3240, 3735, 255},
             {lblEmail, 240, 3480, 3735, 255},
             {cmdOK, 4080, 240, 1335, 375, 0}});
    imgLogo.AccessibleName = "The Velmora logo";
    cmdOK.Click.Add([this] { cmdOK_Click(); });
    CloseRequested.Add([this] { cmdOK_Click(); });
}

void frmAbout::cmdOK_Click() { Visible = false; }

}  // namespace velmora
