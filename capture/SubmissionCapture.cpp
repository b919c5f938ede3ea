#include <utility>

#include "platform/text/CodePage.h"
#include "platform/text/Search.h"
#include "shell/frmBrowser.h"

namespace velmora {

namespace {

/// The address of a navigation, compared with one noted action after the other as UrlsMatch compares
/// them, but put into lower case once only: a page may note 20,000 forms and go to a long address.
class ComparedAddress {
public:
    explicit ComparedAddress(std::string address)
        : address_(std::move(address)), lower_(address_), file_(frmBrowser::GetUrlFileName(lower_))
    {
    }

    /// Puts `noted` into lower case unless it is the whole address, apart from case.
    bool Matches(std::string& noted)
    {
        if (EqualIgnoringCase(address_, noted)) return true;
        isLower_ = true;
        const std::string file = frmBrowser::GetUrlFileName(noted);
        return !file.empty() && file == file_;
    }
    /// What the comparisons have left of the address: lower case after one that was not of whole addresses.
    const std::string& Text() const { return isLower_ ? lower_ : address_; }
    /// The address as it came.
    void Renew() { isLower_ = false; }

private:
    std::string address_;
    std::string lower_;
    std::string file_;
    bool isLower_ = false;
};

}  // namespace

void frmBrowser::CaptureSubmission(BeforeNavigate2Event& event)
{
    if (!gbRecordArmed || !mnuAutoRecord.Checked()) return;
    if (event.PostData.empty()) {
        CaptureQuery(event);
    } else {
        CapturePost(event);
    }
}

void frmBrowser::CapturePost(BeforeNavigate2Event& event)
{
    ComparedAddress action(event.URL);
    for (int i = 0; i < glngNoOfFormAction; ++i) {
        std::string& noted = gstrFormAction[static_cast<std::size_t>(i)];
        if (noted.empty()) continue;
        if (action.Matches(noted) || noted == "*frame*") {
            std::string strAction = action.Text();
            RecordSubmission(event, i, strAction, TextOfBytes(event.PostData));
            return;
        }
    }
}

void frmBrowser::CaptureQuery(BeforeNavigate2Event& event)
{
    const std::size_t mark = event.URL.find('?');
    if (mark == std::string::npos) return;
    ComparedAddress action(event.URL.substr(0, mark));
    for (int i = 0; i < glngNoOfFormAction; ++i) {
        std::string& noted = gstrFormAction[static_cast<std::size_t>(i)];
        action.Renew();
        if (!noted.empty() && action.Matches(noted)) {
            std::string strAction = action.Text();
            RecordSubmission(event, i, strAction, event.URL.substr(mark + 1));
            return;
        }
    }
}

void frmBrowser::RecordSubmission(BeforeNavigate2Event& event, int i, std::string& strAction, std::string strPostdata)
{
    AddTemporaryRecord(event.pDisp, gstrFormActionPage[static_cast<std::size_t>(i)], strAction, event.TargetFrameName,
                       strPostdata, event.Headers);
    glngNoOfFormAction = 0;
}

void frmBrowser::AddTemporaryRecord(BrowserObject& pDisp, const std::string& strPageUrl, std::string& strAction,
                                    const std::string& strFrame, std::string& strPostdata, const std::string& strHeader)
{
    if (HasPair(strPostdata)) ProcessDocument(pDisp, "READ", strAction, strPostdata);
    const std::string number = std::to_string(++lngSessionId);
    const std::string key = "K" + number;
    ListView1.Add(key, "Session" + number,
                  {{"Type", kTypeForm},
                   {"Url", strPageUrl},
                   {"Action", strAction},
                   {"Postdata", strPostdata},
                   {"Header", strHeader},
                   {"Frame", strFrame}});

    const Answer answer =
        platform_.dialogs.MsgBox("A temporary record is created, do you want to view/edit it now?", Buttons::YesNo);
    if (answer != Answer::Yes) return;
    SSTab1.Tab = 1;
    ListView1.Select(ListView1.Find(key));
    cmdEdit_Click();
}

}  // namespace velmora
