// The dialog that holds the default home page for the whole run.
#pragma once

#include <string>

#include "platform/controls/OkCancelDialog.h"

namespace velmora {

class frmHome : public OkCancelDialog {
public:
    /// `home` is the address that the box starts with.
    explicit frmHome(const std::string& home);

    void cmdOK_Click() override;

    bool bSaveFlag = false;  ///< The user pressed OK.

    Label lblHome{*this, "lblHome", "Default home page:"};
    TextBox txtHome{*this, "txtHome"};
};

}  // namespace velmora
