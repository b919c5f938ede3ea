// The dialog that holds the default home page for the whole run.
#pragma once

#include <string>

#include "platform/controls/Controls.h"

namespace velmora {

class frmHome : public Window {
public:
    /// `home` is the address that the box starts with.
    explicit frmHome(const std::string& home);

    void cmdOK_Click();
    void cmdCancel_Click();

    bool bSaveFlag = false;  ///< The user pressed OK.

    Label lblHome{*this, "lblHome", "Default home page:"};
    TextBox txtHome{*this, "txtHome"};
    CommandButton cmdOK{*this, "cmdOK", "OK"};
    CommandButton cmdCancel{*this, "cmdCancel", "Cancel"};
};

}  // namespace velmora
