// What most dialogs have: a button for yes and one for no.
#pragma once

#include <string>

#include "platform/controls/Controls.h"

namespace velmora {

/// Enter presses the one button; Escape and the close box press the other.
class OkCancelDialog : public Window {
public:
    OkCancelDialog(const std::string& caption, const std::string& okCaption);

    virtual void cmdOK_Click() = 0;
    void cmdCancel_Click();

    CommandButton cmdOK;
    CommandButton cmdCancel;
};

}  // namespace velmora
