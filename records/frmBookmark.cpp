#include "records/frmBookmark.h"

namespace velmora {

frmBookmark::frmBookmark() : OkCancelDialog("Edit Bookmark", "Save")
{
    SetInnerSize(12060, 2025);
    Arrange({{lblSession, 120, 180, 1935, 255},
             {txtSession, 2160, 120, 9780, 375, 0},
             {lblUrl, 120, 660, 1935, 255},
             {txtUrl, 2160, 600, 9780, 375, 1},
             {lblAction, 120, 1140, 1935, 255},
             {txtAction, 2160, 1080, 9780, 375, 2},
             {cmdOK, 9390, 1560, 1215, 375, 3},
             {cmdCancel, 10725, 1560, 1215, 375, 4}});
    txtSession.AccessibleName = "Bookmark name";
    txtUrl.AccessibleName = "Destination Address";
    txtAction.AccessibleName = "Originating Address";
    txtUrl.Enabled = false;
    txtAction.Enabled = false;
    FirstFocus = &txtSession;
}

void frmBookmark::cmdOK_Click()
{
    bSaveFlag = true;
    Visible = false;
}

}  // namespace velmora
