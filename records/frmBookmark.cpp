#include "records/frmBookmark.h"

#include <initializer_list>

namespace velmora {

frmBookmark::frmBookmark()
{
    Caption = "Edit Bookmark";
    SetInnerSize(12060, 2025);
    lblSession.Move(120, 180, 1935, 255);
    txtSession.Move(2160, 120, 9780, 375);
    lblUrl.Move(120, 660, 1935, 255);
    txtUrl.Move(2160, 600, 9780, 375);
    lblAction.Move(120, 1140, 1935, 255);
    txtAction.Move(2160, 1080, 9780, 375);
    cmdOK.Move(9390, 1560, 1215, 375);
    cmdCancel.Move(10725, 1560, 1215, 375);
    txtSession.AccessibleName = "Bookmark name";
    txtUrl.AccessibleName = "Destination Address";
    txtAction.AccessibleName = "Originating Address";
    int tabIndex = 0;
    for (Control* control : std::initializer_list<Control*>{&txtSession, &txtUrl, &txtAction, &cmdOK, &cmdCancel}) {
        control->TabIndex = tabIndex++;
    }
    txtUrl.Enabled = false;
    txtAction.Enabled = false;
    cmdOK.Default = true;
    cmdCancel.Cancel = true;
    FirstFocus = &txtSession;
    cmdOK.Click.Add([this] { cmdOK_Click(); });
    cmdCancel.Click.Add([this] { cmdCancel_Click(); });
    CloseRequested.Add([this] { cmdCancel_Click(); });
}

void frmBookmark::cmdOK_Click()
{
    bSaveFlag = true;
    Visible = false;
}

void frmBookmark::cmdCancel_Click() { Visible = false; }

}  // namespace velmora
