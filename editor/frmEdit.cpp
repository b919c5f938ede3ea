#include "editor/frmEdit.h"

#include <string>

namespace velmora {

namespace {

constexpr std::size_t kFieldsOnPage = 20;
constexpr std::size_t kFieldsInColumn = 10;
constexpr Twips kRow = 480;

}  // namespace

frmEdit::frmEdit() : OkCancelDialog({}, "Save")  // the caption goes by the record
{
    SetInnerSize(12180, 7470);
    PlaceControls();
    MakeFields();
    txtSession.AccessibleName = "Record Session Name";
    txtUrl.AccessibleName = "Url";
    txtAction.AccessibleName = "Action";
    SSTab1.AccessibleName = "Fields";
    txtUrl.Enabled = false;
    txtAction.Enabled = false;
    FirstFocus = &txtSession;
    cmdPermanentOK.Click.Add([this] { cmdPermanentOK_Click(); });
}

void frmEdit::PlaceControls()
{
    constexpr int kAfterFields = 4 + static_cast<int>(kFields);
    Arrange({
        {lblSession, 120, 195, 1935, 255},
        {txtSession, 2160, 120, 7560, 375, 0},
        {lblUrl, 120, 675, 1935, 255},
        {txtUrl, 2160, 600, 7560, 375, 1},
        {lblAction, 120, 1155, 1935, 255},
        {txtAction, 2160, 1080, 7560, 375, 2},
        {SSTab1, 120, 1620, 11940, 5340, 3},
        {cmdOK, 9900, 120, 2160, 375, kAfterFields},
        {cmdPermanentOK, 9900, 600, 2160, 375, kAfterFields + 1},
        {cmdCancel, 9900, 1080, 2160, 375, kAfterFields + 2},
        {StatusBar1, 0, 7095, 12180, 375},
    });
    StatusBar1.Panels(1).Width = 12180;
}

void frmEdit::MakeFields()
{
    for (std::size_t i = 0; i < kFields; ++i) {
        const std::size_t onPage = i % kFieldsOnPage;
        const Twips left = onPage < kFieldsInColumn ? 120 : 6120;
        const Twips top = 450 + kRow * static_cast<Twips>(onPage % kFieldsInColumn);
        const std::string index = "(" + std::to_string(i) + ")";
        Label& name = lblName.emplace_back(SSTab1, "lblName" + index, "Blank");
        TextBox& value = txtValue.emplace_back(SSTab1, "txtValue" + index);
        name.Move(left, top + 75, 1695, 255);
        value.Move(left + 1920, top, 3615, 375);
        name.Page = static_cast<int>(i / kFieldsOnPage);
        value.Page = name.Page();
        value.TabIndex = 4 + static_cast<int>(i);
        value.AccessibleName = "Blank";
        value.Enabled = false;
    }
}

void frmEdit::cmdOK_Click()
{
    bEditFlag = true;
    Visible = false;
}

void frmEdit::cmdPermanentOK_Click()
{
    bEditFlag = true;
    bSavePermanent = true;
    Visible = false;
}

}  // namespace velmora
