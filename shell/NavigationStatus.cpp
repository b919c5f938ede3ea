#include <exception>

#include "shell/frmAbout.h"
#include "shell/frmBrowser.h"

namespace velmora {

void frmBrowser::wbMyBrowser_BeforeNavigate2(BeforeNavigate2Event& event)
{
    try {
        ShowStatus("Going to " + event.URL + "...");
        cmdBookmark.Enabled = false;
        Timer1.Interval = 1000;
        Timer1.Enabled = true;
        CaptureSubmission(event);
    } catch (const std::exception&) {
        // The navigation goes on whatever became of its capture.
    }
}

void frmBrowser::wbMyBrowser_DocumentComplete(BrowserObject& pDisp, const std::string& URL)
{
    try {
        Timer1.Enabled = false;
        ShowStatus({});
        CollectFormActions(pDisp, URL, glngNoOfFormAction, gstrFormActionPage, gstrFormAction);
        strLastUrl = URL;
        EnableBookmark();
        PlayDocument(pDisp, URL);
    } catch (const std::exception&) {
        // The address counts as handled, so that a failing fill is not tried again and again.
    }
    // Last, since the playback compares with the address before this one.
    gstrLastFilledUrl = URL;
}

void frmBrowser::wbMyBrowser_NavigationEnded()
{
    Timer1.Enabled = false;
    ShowStatus({});
    EnableBookmark();
}

void frmBrowser::wbMyBrowser_DocumentResumed(BrowserObject& pDisp, const std::string& URL)
{
    CollectFormActions(pDisp, URL, glngNoOfFormAction, gstrFormActionPage, gstrFormAction);
}

void frmBrowser::wbMyBrowser_FormsAdded(BrowserObject& pDisp, const std::string& URL)
{
    // The address was handled for the sake of other forms. Nobody is asked about forms that no record is for.
    gstrLastFilledUrl = HasRecordFor(pDisp, URL) ? "" : URL;
}

void frmBrowser::EnableBookmark() { cmdBookmark.Enabled = strLastUrl != "about:blank" && !strLastUrl.empty(); }

void frmBrowser::wbMyBrowser_CommandStateChange(int Command, bool Enable)
{
    if (Command == WebBrowser::kCommandBack) cmdBack.Enabled = Enable;
}

void frmBrowser::Timer1_Timer()
{
    constexpr std::size_t kLongestTail = 20;
    std::string text = StatusBar1.Panels(1).Text();
    const std::size_t last = text.find_last_not_of('.');
    const std::size_t dots = last == std::string::npos ? 0 : text.size() - last - 1;
    if (dots < kLongestTail) {
        text += "..";
    } else {
        text.replace(last + 1, dots, ".");
    }
    ShowStatus(text);
}

void frmBrowser::cmdBack_Click()
{
    wbMyBrowser.GoBack();
    AutoHideRecords();
}

void frmBrowser::mnuWebsite_Click()
{
    wbMyBrowser.Navigate2(platform_.website);
    AutoHideRecords();
}

void frmBrowser::mnuAbout_Click()
{
    frmAbout about(platform_.website, platform_.contact);
    platform_.dialogs.ShowModal(about);
}

}  // namespace velmora
