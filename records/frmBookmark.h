// The dialog in which a bookmark gets its name.
#pragma once

#include "platform/controls/OkCancelDialog.h"

namespace velmora {

class frmBookmark : public OkCancelDialog {
public:
    frmBookmark();

    void cmdOK_Click() override;

    bool bSaveFlag = false;  ///< The user saved.

    Label lblSession{*this, "lblSession", "Bookmark name:"};
    TextBox txtSession{*this, "txtSession"};
    Label lblUrl{*this, "lblUrl", "Destination Address:"};
    TextBox txtUrl{*this, "txtUrl"};
    Label lblAction{*this, "lblAction", "Originating Address:"};
    TextBox txtAction{*this, "txtAction"};
};

}  // namespace velmora
