// The dialog in which a bookmark gets its name.
#pragma once

#include "platform/controls/Controls.h"

namespace velmora {

class frmBookmark : public Window {
public:
    frmBookmark();

    void cmdOK_Click();
    void cmdCancel_Click();

    bool bSaveFlag = false;  ///< The user saved.

    Label lblSession{*this, "lblSession", "Bookmark name:"};
    TextBox txtSession{*this, "txtSession"};
    Label lblUrl{*this, "lblUrl", "Destination Address:"};
    TextBox txtUrl{*this, "txtUrl"};
    Label lblAction{*this, "lblAction", "Originating Address:"};
    TextBox txtAction{*this, "txtAction"};
    CommandButton cmdOK{*this, "cmdOK", "Save"};
    CommandButton cmdCancel{*this, "cmdCancel", "Cancel"};
};

}  // namespace velmora
