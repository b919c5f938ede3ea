// The proxy dialog. Its controls hold the setting for the whole run.
#pragma once

#include <string>

#include "platform/Platform.h"
#include "platform/controls/OkCancelDialog.h"

namespace velmora {

class frmProxy : public OkCancelDialog {
public:
    explicit frmProxy(Platform& platform);

    /// Hands the setting to the browser, tells the user how it went, hides the dialog.
    void cmdOK_Click() override;
    /// Puts the next free server of the proxy server list into the boxes; they stay if there is none.
    void cmdProxy_Click();

    /// Marks the next free server of a database in the program's folder as used and gives it as
    /// "address:port". Empty if no server is free or the database cannot be used.
    std::string GetNextProxy(const std::string& strDatabase);

    Label Label1{*this, "Label1", "Proxy Server: "};
    TextBox txtIP{*this, "txtIP"};
    Label Label2{*this, "Label2", "Port No:"};
    TextBox txtPort{*this, "txtPort"};
    CheckBox chkUseProxy{*this, "chkUseProxy", "Use Proxy Server"};
    Label Label3{*this, "Label3", "Use Proxy Server"};
    CommandButton cmdProxy{*this, "cmdProxy", "Get Proxy"};

private:
    Platform& platform_;
};

}  // namespace velmora
