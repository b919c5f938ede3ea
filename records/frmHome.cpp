#include "records/frmHome.h"

namespace velmora {

frmHome::frmHome(const std::string& home) : OkCancelDialog("Default Home Page Setup", "OK")
{
    SetInnerSize(7170, 1410);
    Arrange({{lblHome, 120, 300, 1755, 255},
             {txtHome, 1980, 240, 5070, 375, 0},
             {cmdOK, 4500, 870, 1215, 375, 1},
             {cmdCancel, 5835, 870, 1215, 375, 2}});
    txtHome.Text = home;
    txtHome.AccessibleName = "Default home page";
    FirstFocus = &txtHome;
}

void frmHome::cmdOK_Click()
{
    bSaveFlag = true;
    Visible = false;
}

}  // namespace velmora
