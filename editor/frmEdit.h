// The dialog in which a form record is viewed and edited.
#pragma once

#include <cstddef>
#include <deque>

#include "platform/controls/OkCancelDialog.h"

namespace velmora {

class frmEdit : public OkCancelDialog {
public:
    static constexpr std::size_t kFields = 60;

    frmEdit();

    void cmdOK_Click() override;
    void cmdPermanentOK_Click();

    bool bEditFlag = false;       ///< The user saved.
    bool bSavePermanent = false;  ///< The user saved and wants the record moved to the permanent ones.

    Label lblSession{*this, "lblSession", "Record Session Name"};
    TextBox txtSession{*this, "txtSession"};
    Label lblUrl{*this, "lblUrl", "Url"};
    TextBox txtUrl{*this, "txtUrl"};
    Label lblAction{*this, "lblAction", "Action"};
    TextBox txtAction{*this, "txtAction"};
    SSTab SSTab1{*this, "SSTab1", {"Page 1", "Page 2", "Page 3"}};
    std::deque<Label> lblName;     ///< The fields' names, from 0 to 59.
    std::deque<TextBox> txtValue;  ///< Their values.
    CommandButton cmdPermanentOK{*this, "cmdPermanentOK", "Save as Permanent"};
    StatusBar StatusBar1{*this, "StatusBar1", 1};

private:
    void PlaceControls();
    /// Makes the pairs of name and value: 20 to a page, ten to a column.
    void MakeFields();
};

}  // namespace velmora
