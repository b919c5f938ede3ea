#include "services/frmProxy.h"

#include "platform/Dialogs.h"
#include "platform/Proxy.h"

namespace velmora {

frmProxy::frmProxy(Platform& platform) : OkCancelDialog("Proxy Setting", "OK"), platform_(platform)
{
    SetInnerSize(6450, 2685);
    Arrange({{Label1, 240, 840, 1095, 255},
             {txtIP, 1440, 740, 4815, 375, 0},
             {Label2, 240, 1440, 1095, 255},
             {txtPort, 1440, 1340, 4815, 375, 1},
             {cmdOK, 3600, 2040, 1215, 375, 2},
             {cmdCancel, 5040, 2040, 1215, 375, 3},
             {chkUseProxy, 240, 240, 255, 255, 4},
             {Label3, 550, 290, 2295, 375},
             {cmdProxy, 2160, 2040, 1215, 375, 5}});
    chkUseProxy.Value = 1;
    cmdProxy.Visible = false;
    txtIP.AccessibleName = "Proxy Server";
    txtPort.AccessibleName = "Port No";
    FirstFocus = &txtIP;
    cmdProxy.Click.Add([this] { cmdProxy_Click(); });
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

}  // namespace velmora
