#include "services/frmProxy.h"

#include "platform/Dialogs.h"
#include "platform/Proxy.h"

namespace velmora {

frmProxy::frmProxy(Platform& platform) : platform_(platform)
{
    Caption = "Proxy Setting";
    SetInnerSize(6450, 2685);
    Label1.Move(240, 840, 1095, 255);
    txtIP.Move(1440, 740, 4815, 375);
    Label2.Move(240, 1440, 1095, 255);
    txtPort.Move(1440, 1340, 4815, 375);
    cmdOK.Move(3600, 2040, 1215, 375);
    cmdCancel.Move(5040, 2040, 1215, 375);
    chkUseProxy.Move(240, 240, 255, 255);
    Label3.Move(550, 290, 2295, 375);
    cmdProxy.Move(2160, 2040, 1215, 375);
    chkUseProxy.Value = 1;
    cmdProxy.Visible = false;
    txtIP.AccessibleName = "Proxy Server";
    txtPort.AccessibleName = "Port No";
    int tabIndex = 0;
    for (Control* control : Controls) control->TabIndex = tabIndex++;
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
    FirstFocus = &txtIP;
    cmdOK.Click.Add([this] { cmdOK_Click(); });
    cmdCancel.Click.Add([this] { cmdCancel_Click(); });
    cmdProxy.Click.Add([this] { cmdProxy_Click(); });
    CloseRequested.Add([this] { cmdCancel_Click(); });
}

void frmProxy::cmdOK_Click()
{
    const std::string proxyText = "http=" + txtIP.Text() + ":" + txtPort.Text();
    const ProxyAccess access = chkUseProxy.Value() == 1 ? ProxyAccess::Proxy : ProxyAccess::Direct;
    std::string message = "Unable to update the IE proxy settings.";
    Icon icon = Icon::Exclamation;
    if (platform_.proxy.SetProxy(access, proxyText)) {
        message = chkUseProxy.Value() == 1 ? "The IE proxy settings was updated sucsessfully."
                                           : "IE Proxy settings was cleared.";
        icon = Icon::Information;
    }
    platform_.dialogs.MsgBox(message, Buttons::Ok, icon, "IE Proxy Settings");
    Visible = false;
}

void frmProxy::cmdCancel_Click() { Visible = false; }

}  // namespace velmora
