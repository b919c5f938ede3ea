// The browser component on WebKitGTK: one web view, driven as the engine of a WebBrowser control.
#pragma once

#include <webkit/webkit.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Browser.h"
#include "platform/Dialogs.h"
#include "platform/webkit/Callbacks.h"
#include "platform/webkit/PageAgents.h"
#include "platform/webkit/PopupWindow.h"
#include "platform/webkit/ViewServices.h"

namespace velmora {

class WebKitBrowser : public BrowserEngine {
public:
    struct Options {
        std::string agentFolder;  ///< Holds the page agent's library and nothing else.
        std::string dataFolder;   ///< Cookies and site storage; empty: nothing is kept.
        std::string cacheFolder;
    };

    /// Makes the view and becomes the control's engine. `dialogs` asks what the pages give reason to
    /// ask. The control and the dialogs must outlive it.
    WebKitBrowser(WebBrowser& control, Dialogs& dialogs, const Options& options);
    ~WebKitBrowser() override;
    WebKitBrowser(const WebKitBrowser&) = delete;
    WebKitBrowser& operator=(const WebKitBrowser&) = delete;

    /// The view with its find row and the list of downloads.
    GtkWidget* Widget() const { return area_; }
    WebKitWebView* View() const { return view_; }
    WebKitNetworkSession* Session() const { return session_; }

    void Navigate(const std::string& url) override;
    void GoBack() override;
    std::shared_ptr<Document> CurrentDocument() override;

private:
    void MakeView(const Options& options);
    void ConnectSignals();
    void OnFinished(const PagePlace& place, const std::string& url);
    /// Announces a form that the page's script has sent as a navigation would be; since the page stays,
    /// its document then counts as finished once more.
    void OnSubmitted(const PageAgents::Submission& submission);
    /// Raises BeforeNavigate2, which may hold the navigation for as long as a question is open.
    void AnnounceNavigation(WebKitNavigationAction* action);
    /// A navigation led to no new document: the one that stands is reported as finished once more, so
    /// that nobody waits for another.
    void ReportStandingDocument();
    void ReportBack();

    WebBrowser& control_;
    WebKitWebContext* context_ = nullptr;
    WebKitNetworkSession* session_ = nullptr;
    WebKitWebView* view_ = nullptr;
    GtkWidget* area_ = nullptr;
    PageAgents agents_;
    std::optional<bool> canGoBack_;
    std::shared_ptr<PageChannel> lastSender_;  ///< The page that last navigated by a form, and when.
    std::uint64_t lastSent_ = 0;               ///< In milliseconds since 1970.
    PagePlace lastPlace_;                      ///< The document that finished last, and its address.
    std::string lastUrl_;
    bool isAwaited_ = false;  ///< A navigation was announced, and no document has finished since.
    std::unique_ptr<ViewServices> services_;
    std::unique_ptr<PopupWindows> popups_;
    Callbacks callbacks_;
};

}  // namespace velmora
