#include "platform/controls/OkCancelDialog.h"

namespace velmora {

OkCancelDialog::OkCancelDialog(const std::string& caption, const std::string& okCaption)
    : cmdOK(*this, "cmdOK", okCaption, {.Default = true}), cmdCancel(*this, "cmdCancel", "Cancel", {.Cancel = true})
{
    Caption = caption;
    cmdOK.Click.Add([this] { cmdOK_Click(); });
    cmdCancel.Click.Add([this] { cmdCancel_Click(); });
    CloseRequested.Add([this] { cmdCancel_Click(); });
}

void OkCancelDialog::cmdCancel_Click() { Visible = false; }

}  // namespace velmora
