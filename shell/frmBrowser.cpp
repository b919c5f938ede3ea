#include "shell/frmBrowser.h"

#include <exception>
#include <utility>

#include "editor/frmEdit.h"
#include "platform/Turns.h"
#include "records/frmBookmark.h"
#include "records/frmHome.h"
#include "services/frmProxy.h"

namespace velmora {

frmBrowser::frmBrowser(Platform platform) : platform_(std::move(platform))
{
    Caption = "Velmora v" VELMORA_VERSION;
    SetInnerSize(13050, 9930);
    CenterForm(*this);
    lvwPermanent.IndexBy(kUrlColumn);
    PlaceControls();
    BuildMenu();
    ConnectEvents();
}

frmBrowser::~frmBrowser() = default;

void frmBrowser::PlaceControls()
{
    Arrange({
        {Frame1, 120, 0, 12720, 650},
        {cmdBack, 0, 120, 1600, 495, 1},
        {cmdPlayback, 1560, 120, 1600, 495, 2},
        {cmdHideRecord, 3120, 120, 1600, 495, 4},
        {cmdRecord, 4720, 120, 1600, 495, 3},
        {cmdAutoHide, 6330, 120, 1600, 495, 5},
        {cmdAutoClick, 9480, 120, 1600, 495, 7},
        {cmdBookmark, 11090, 120, 1600, 495, 16},
        {cmdPrompt, 8050, 120, 1600, 495, 6},
        {lblUrl, 120, 840, 615, 255},
        {txtUrl, 840, 720, 12015, 375, 8},
        {wbMyBrowser, 120, 1200, 12735, 5295, 0},
        {SSTab1, 120, 6600, 10935, 2895, 9},
        {lvwPermanent, 120, 360, 10695, 2535, 10},
        {ListView1, 120, 360, 10695, 2535, 15},
        {cmdEdit, 11160, 6600, 1695, 495, 11},
        {cmdDelete, 11160, 7320, 1695, 495, 12},
        {cmdSave, 11160, 8040, 1695, 495, 13},
        {cmdFill, 11160, 8760, 1695, 495, 14},
        {StatusBar1, 0, 9555, 13050, 375},
    });
    cmdBookmark.Enabled = false;
    ListView1.Page = 1;
    StatusBar1.Panels(1).Width = 13050 - 2100;
    StatusBar1.Panels(2).Width = 2100;
    txtUrl.AccessibleName = "Address";
    SSTab1.AccessibleName = "Records";
    lvwPermanent.AccessibleName = "Permanent Record";
    ListView1.AccessibleName = "Temporary Record";
    FirstFocus = &txtUrl;
}

void frmBrowser::BuildMenu()
{
    mnuFile.Children = {&mnuProxy, &mnuHome, &mnuSep1, &mnuExit};
    mnuView.Children = {&mnuHideRecord, &mnuAutoHide};
    mnuPlayback.Children = {&mnuPromptFill, &mnuPlaybackSep1, &mnuManualClick, &mnuAutoClick, &mnuNoFill};
    mnuRecord.Children = {&mnuAutoRecord};
    mnuPopup.Children = {&mnuBlock};
    mnuHelp.Children = {&mnuWebsite, &mnuAbout};
    Menu = {&mnuFile, &mnuView, &mnuPlayback, &mnuRecord, &mnuPopup, &mnuHelp};
}

void frmBrowser::ConnectEvents()
{
    const std::pair<Event<>&, void (frmBrowser::*)()> handlers[] = {
        {cmdBack.Click, &frmBrowser::cmdBack_Click},
        {cmdPlayback.Click, &frmBrowser::cmdPlayback_Click},
        {cmdHideRecord.Click, &frmBrowser::mnuHideRecord_Click},
        {cmdRecord.Click, &frmBrowser::mnuAutoRecord_Click},
        {cmdAutoHide.Click, &frmBrowser::mnuAutoHide_Click},
        {cmdPrompt.Click, &frmBrowser::mnuPromptFill_Click},
        {cmdAutoClick.Click, &frmBrowser::mnuAutoClick_Click},
        {cmdBookmark.Click, &frmBrowser::cmdBookmark_Click},
        {cmdEdit.Click, &frmBrowser::cmdEdit_Click},
        {cmdDelete.Click, &frmBrowser::cmdDelete_Click},
        {cmdSave.Click, &frmBrowser::cmdSave_Click},
        {cmdFill.Click, &frmBrowser::cmdFill_Click},
        {mnuProxy.Click, &frmBrowser::mnuProxy_Click},
        {mnuHome.Click, &frmBrowser::mnuHome_Click},
        {mnuExit.Click, &frmBrowser::mnuExit_Click},
        {mnuHideRecord.Click, &frmBrowser::mnuHideRecord_Click},
        {mnuAutoHide.Click, &frmBrowser::mnuAutoHide_Click},
        {mnuPromptFill.Click, &frmBrowser::mnuPromptFill_Click},
        {mnuManualClick.Click, &frmBrowser::mnuManualClick_Click},
        {mnuAutoClick.Click, &frmBrowser::mnuAutoClick_Click},
        {mnuNoFill.Click, &frmBrowser::mnuNoFill_Click},
        {mnuAutoRecord.Click, &frmBrowser::mnuAutoRecord_Click},
        {mnuBlock.Click, &frmBrowser::mnuBlock_Click},
        {mnuWebsite.Click, &frmBrowser::mnuWebsite_Click},
        {mnuAbout.Click, &frmBrowser::mnuAbout_Click},
        {CloseRequested, &frmBrowser::mnuExit_Click},
    };
    for (const auto& [event, handler] : handlers) {
        event.Add([this, call = handler] { platform_.turns.Take([this, call] { Handle(call); }); });
    }
    // The clock and the window's size wait for nobody.
    Timer1.Tick.Add([this] { Timer1_Timer(); });
    Resize.Add([this] { Form_Resize(); });
    SSTab1.Click.Add([this](int previousTab) { SSTab1_Click(previousTab); });
    lvwPermanent.ColumnClick.Add([this](const ColumnHeader& header) { lvwPermanent_ColumnClick(header); });
    wbMyBrowser.BeforeNavigate2.Add([this](BeforeNavigate2Event& event) { wbMyBrowser_BeforeNavigate2(event); });
    wbMyBrowser.DocumentComplete.Add(
        [this](BrowserObject& pDisp, const std::string& URL) { wbMyBrowser_DocumentComplete(pDisp, URL); });
    wbMyBrowser.NavigationEnded.Add([this] { wbMyBrowser_NavigationEnded(); });
    wbMyBrowser.FormsAdded.Add(
        [this](BrowserObject& pDisp, const std::string& URL) { wbMyBrowser_FormsAdded(pDisp, URL); });
    wbMyBrowser.DocumentResumed.Add(
        [this](BrowserObject& pDisp, const std::string& URL) { wbMyBrowser_DocumentResumed(pDisp, URL); });
    wbMyBrowser.NewWindow2.Add([this](bool& Cancel) { wbMyBrowser_NewWindow2(Cancel); });
    wbMyBrowser.CommandStateChange.Add(
        [this](int Command, bool Enable) { wbMyBrowser_CommandStateChange(Command, Enable); });
}

void frmBrowser::Handle(void (frmBrowser::*handler)())
{
    try {
        (this->*handler)();
    } catch (const std::exception&) {
        // Out of a handler it would end the program, and the temporary records with it.
    }
}

void frmBrowser::ShowStatus(const std::string& text) { StatusBar1.Panels(1).Text = text; }

void frmBrowser::AskForSelection() { platform_.dialogs.MsgBox("Please select a record session from the list first!"); }

frmHome& frmBrowser::Home()
{
    if (!frmHome_) frmHome_ = std::make_unique<frmHome>(platform_.website);
    return *frmHome_;
}

frmProxy& frmBrowser::ProxyDialog()
{
    if (!frmProxy_) frmProxy_ = std::make_unique<frmProxy>(platform_);
    return *frmProxy_;
}

frmEdit& frmBrowser::Edit()
{
    if (!frmEdit_) frmEdit_ = std::make_unique<frmEdit>();
    return *frmEdit_;
}

frmBookmark& frmBrowser::Bookmark()
{
    if (!frmBookmark_) frmBookmark_ = std::make_unique<frmBookmark>();
    return *frmBookmark_;
}

}  // namespace velmora
