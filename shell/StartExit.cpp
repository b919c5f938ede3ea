#include <exception>

#include "platform/Files.h"
#include "platform/Turns.h"
#include "records/frmHome.h"
#include "services/frmProxy.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

bool HoldsOnlyBlanks(const std::string& text) { return text.find_first_not_of(' ') == std::string::npos; }

}  // namespace

void frmBrowser::Form_Load()
{
    ProxyDialog();
    Timer1.Enabled = false;
    wbMyBrowser.Navigate("about:blank");
    SetColumns(ListView1);
    SetColumns(lvwPermanent);
    glngCurTab = 0;
    cmdSave.Enabled = false;
    cmdFill.Enabled = true;
    PrepareSessionFolder();
    LoadPermanentSession();
    SortPermanentList(0);
    txtUrl.Text = Home().txtHome.Text();
    cmdPlayback_Click();
}

void frmBrowser::PrepareSessionFolder()
{
    Files& files = platform_.files;
    gstrSessionPath = files.ProgramFolder() + "/session";
    try {
        if (!files.Exists(gstrSessionPath)) files.MakeFolder(gstrSessionPath);
    } catch (const std::exception&) {
        // The user is told when it cannot be listed either.
    }
}

void frmBrowser::mnuExit_Click()
{
    frmProxy& proxy = ProxyDialog();
    if (proxy.chkUseProxy.Value() == 1 && !HoldsOnlyBlanks(proxy.txtIP.Text())) {
        proxy.chkUseProxy.Value = 0;
        proxy.cmdOK_Click();
    }
    if (ListView1.Count() > 0) {
        const Answer answer = platform_.dialogs.MsgBox(
            "You have temporary record not saved as permanent yet, do you really want to exit?", Buttons::YesNo);
        if (answer != Answer::Yes) return;
    }
    Visible = false;
    platform_.turns.End();
    platform_.dialogs.EndProgram();
}

void frmBrowser::CenterForm(Window& form)
{
    form.Left = (platform_.dialogs.ScreenWidth() - form.Width()) / 2;
    form.Top = (platform_.dialogs.ScreenHeight() - form.Height()) / 2;
}

}  // namespace velmora
