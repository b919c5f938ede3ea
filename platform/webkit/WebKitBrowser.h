// The browser component on WebKitGTK: one web view, driven as the engine of a WebBrowser control.
#pragma once

#include <webkit/webkit.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Browser.h"
#include "platform/webkit/PageAgents.h"

namespace velmora {

class WebKitBrowser : public BrowserEngine {
public:
    struct Options {
        std::string agentFolder;  ///< Holds the page agent's library and nothing else.
        std::string dataFolder;   ///< Cookies and site storage; empty: nothing is kept.
        std::string cacheFolder;
    };

    /// Makes the view and becomes the control's engine. The control must outlive it.
    WebKitBrowser(WebBrowser& control, const Options& options);
    ~WebKitBrowser() override;
    WebKitBrowser(const WebKitBrowser&) = delete;
    WebKitBrowser& operator=(const WebKitBrowser&) = delete;

    GtkWidget* Widget() const { return GTK_WIDGET(view_); }
    WebKitWebView* View() const { return view_; }
    WebKitNetworkSession* Session() const { return session_; }

    void Navigate(const std::string& url) override;
    void GoBack() override;
    std::shared_ptr<Document> CurrentDocument() override;

private:
    void MakeView(const Options& options);
    void ConnectSignals();
    void OnFinished(const PagePlace& place, const std::string& url);
    /// Raises BeforeNavigate2, which may hold the navigation for as long as a question is open.
    void AnnounceNavigation(WebKitNavigationAction* action);
    bool DecideResponse(WebKitResponsePolicyDecision* decision);
    void ShowFailure(const std::string& address, const std::string& reason);
    void ReportBack();

    WebBrowser& control_;
    WebKitWebContext* context_ = nullptr;
    WebKitNetworkSession* session_ = nullptr;
    WebKitWebView* view_ = nullptr;
    PageAgents agents_;
    std::optional<bool> canGoBack_;
};

}  // namespace velmora
