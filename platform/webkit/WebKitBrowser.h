// The browser component on WebKitGTK: one web view, driven as the engine of a WebBrowser control.
#pragma once

#include <webkit/webkit.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>

#include "platform/Dialogs.h"
#include "platform/controls/WebBrowser.h"
#include "platform/document/BrowserEvents.h"
#include "platform/glib/Callbacks.h"
#include "platform/webkit/chrome/PopupWindow.h"
#include "platform/webkit/chrome/ViewServices.h"
#include "platform/webkit/engine/PageAgents.h"

namespace velmora {

class WebKitBrowser : public BrowserEngine {
public:
    struct Options {
        std::string agentFolder;  ///< Holds the page agent's library and nothing else.
        std::string dataFolder;   ///< Cookies and site storage; empty: nothing is kept.
        std::string cacheFolder;
    };

    /// Makes the view and becomes the control's engine. `dialogs` asks what the pages give reason to
    /// ask; events are handled in `turns`. The control, the dialogs and the turns must outlive it.
    WebKitBrowser(WebBrowser& control, Dialogs& dialogs, Turns& turns, const Options& options);
    ~WebKitBrowser() override;
    WebKitBrowser(const WebKitBrowser&) = delete;
    WebKitBrowser& operator=(const WebKitBrowser&) = delete;

    /// The view with its find row and the list of downloads.
    GtkWidget* Widget() const { return area_.get(); }
    WebKitWebView* View() const { return view_.get(); }
    WebKitNetworkSession* Session() const { return session_.get(); }

    void Navigate(const std::string& url) override;
    void GoBack() override;
    std::shared_ptr<Document> CurrentDocument() override;

private:
    /// Between two loads, as between an old page's end and the beginning of the new one, there may be a
    /// moment in which nothing is loading. In milliseconds.
    static constexpr unsigned kMoment = 250;

    void MakeView(const Options& options);
    void ConnectSignals();
    void ConnectUserActs();
    /// The address under which a finished document is reported; nothing if the view does not show it.
    std::optional<std::string> ReportedAddress(const std::string& url, bool isTop) const;
    /// Announces a navigation; its decision waits for that.
    void AnnounceNavigation(WebKitNavigationPolicyDecision* decision);
    /// Counts a resource for as long as it loads, if it is the document of a frame that loads late.
    void WatchDocument(WebKitWebResource* resource);
    void EndDocument();
    /// Something that was loading is not any more. Once nothing is, the events are told.
    void NoteRest(unsigned milliseconds = kMoment);
    void ReportBack();

    WebBrowser& control_;
    std::shared_ptr<WebKitWebContext> context_;
    std::shared_ptr<WebKitNetworkSession> session_;
    std::shared_ptr<WebKitWebView> view_;
    std::shared_ptr<GtkWidget> area_;
    const std::shared_ptr<PageTime> time_ = std::make_shared<PageTime>();
    BrowserEvents events_;
    PageAgents agents_;
    std::optional<bool> canGoBack_;
    std::deque<std::string> announced_;  ///< Where the latest navigations go.
    int documentsLoading_ = 0;
    guint rest_ = 0;  ///< What is to be done when nothing has been loading for a moment.
    std::unique_ptr<ViewServices> services_;
    std::unique_ptr<PopupWindows> popups_;
    Callbacks callbacks_;
};

}  // namespace velmora
