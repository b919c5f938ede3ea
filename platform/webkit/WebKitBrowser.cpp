#include "platform/webkit/WebKitBrowser.h"

#include <algorithm>
#include <utility>

#include "platform/document/Address.h"
#include "platform/document/PageDocument.h"
#include "platform/webkit/chrome/LoadFailures.h"
#include "platform/webkit/chrome/PageArea.h"
#include "platform/webkit/engine/MainLoopWait.h"
#include "platform/webkit/engine/StandingPage.h"
#include "platform/webkit/engine/UserSession.h"
#include "platform/webkit/guide/GuideSite.h"

namespace velmora {

namespace {

constexpr std::size_t kMostAnnounced = 64;
constexpr std::size_t kLongestAnnounced = std::size_t{64} << 10;

// Of a navigation that was let go nothing may come at all, a load that begins comes within this time as a
// rule. In milliseconds.
constexpr unsigned kLongMoment = 2000;

std::string TextOf(const char* text) { return text ? text : ""; }

/// The headers of a request, a line each.
std::string HeadersOf(WebKitURIRequest* request)
{
    std::string lines;
    SoupMessageHeaders* headers = webkit_uri_request_get_http_headers(request);
    if (!headers) return lines;
    soup_message_headers_foreach(
        headers,
        [](const char* name, const char* value, gpointer data) {
            *static_cast<std::string*>(data) += TextOf(name) + ": " + TextOf(value) + "\r\n";
        },
        &lines);
    return lines;
}

}  // namespace

WebKitBrowser::WebKitBrowser(WebBrowser& control, Dialogs& dialogs, Turns& turns, const Options& options)
    : control_(control), events_(control, turns, time_,
                                 [this](const std::string& url, bool isTop) { return ReportedAddress(url, isTop); }),
      agents_(events_, WaitOnMainLoop, time_)
{
    MakeView(options);
    services_ = std::make_unique<ViewServices>(session_.get(), dialogs, turns);
    popups_ = std::make_unique<PopupWindows>(*services_);
    gtk_box_append(GTK_BOX(area_.get()), services_->Downloads().Widget());
    ConnectSignals();
    ConnectUserActs();
    control_.Attach(this);
}

WebKitBrowser::~WebKitBrowser() { control_.Attach(nullptr); }

void WebKitBrowser::MakeView(const Options& options)
{
    context_ = Owned(webkit_web_context_new());
    // Both before the first web process: a path that comes later is fatal.
    webkit_web_context_add_path_to_sandbox(context_.get(), options.agentFolder.c_str(), TRUE);
    webkit_web_context_set_web_process_extensions_directory(context_.get(), options.agentFolder.c_str());
    ServeGuide(context_.get());
    session_ = Owned(NewUserSession(options.dataFolder, options.cacheFolder));
    const auto settings = Owned(webkit_settings_new());
    // The program's own question decides about windows; the engine must not refuse them before it.
    webkit_settings_set_javascript_can_open_windows_automatically(settings.get(), TRUE);
    view_ = Held(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", context_.get(), "network-session",
                                              session_.get(), "settings", settings.get(), nullptr)));
    area_ = Held(NewPageArea(view_.get()));
}

void WebKitBrowser::ConnectSignals()
{
    WebKitWebView* const view = view_.get();
    services_->Serve(view);
    callbacks_.Connect(view, "user-message-received", [this](WebKitWebView*, WebKitUserMessage* message) {
        const bool isTaken = agents_.Take(message);
        if (isTaken) NoteRest();
        return isTaken;
    });
    const auto decide = [this](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
        if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return false;
        AnnounceNavigation(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
        return true;
    };
    callbacks_.Connect(view, "decide-policy", decide);
    callbacks_.Connect(view, "create", [this, view] { return events_.AllowsWindow() ? popups_->Open(view) : nullptr; });
    callbacks_.Connect(view, "notify::is-loading", [this] {
        documentsLoading_ = 0;  // the page's own load waits for its frames
        NoteRest();
    });
    callbacks_.Connect(view, "resource-load-started",
                       [this](WebKitWebView*, WebKitWebResource* resource) { WatchDocument(resource); });
    services_->Downloads().Started = [this, view](WebKitWebView* from) {
        if (from == view) EndDocument();
    };
    callbacks_.Connect(view, "notify::uri", [view] {
        // Within a document the page's script moves the address without a load.
        if (webkit_web_view_is_loading(view)) return;
        webkit_web_view_send_message_to_page(view, webkit_user_message_new(wire::kMoved, nullptr), nullptr, nullptr,
                                             nullptr);
    });
    callbacks_.Connect(webkit_web_view_get_back_forward_list(view), "changed", [this] { ReportBack(); });
}

void WebKitBrowser::ConnectUserActs()
{
    GtkEventController* keys = gtk_event_controller_key_new();
    callbacks_.Connect(keys, "key-pressed", [this] { events_.NoteUserAct(); });
    GtkGesture* clicks = gtk_gesture_click_new();
    gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(clicks), 0);
    callbacks_.Connect(clicks, "pressed", [this] { events_.NoteUserAct(); });
    for (GtkEventController* controller : {keys, GTK_EVENT_CONTROLLER(clicks)}) {
        gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
        gtk_widget_add_controller(GTK_WIDGET(view_.get()), controller);
    }
}

void WebKitBrowser::Navigate(const std::string& url)
{
    events_.NoteUserAct();
    ReportBack();
    // A page that hangs would keep the next one waiting.
    if (webkit_web_view_get_is_web_process_responsive(view_.get())) {
        webkit_web_view_load_uri(view_.get(), LoadableAddress(url).c_str());
    } else {
        EndPage(view_.get(), LoadableAddress(url));
    }
}

void WebKitBrowser::GoBack() { webkit_web_view_go_back(view_.get()); }

std::shared_ptr<Document> WebKitBrowser::CurrentDocument() { return OpenDocument(agents_.Top()); }

std::optional<std::string> WebKitBrowser::ReportedAddress(const std::string& url, bool isTop) const
{
    // What stands in for a page that failed is no page of the site: no record is played on it, and no
    // bookmark is taken of it.
    if (url == kFailureAddress) return "about:blank";
    if (!isTop || url == "about:blank") return url;
    const auto isShownAs = [&](const std::string& shown) { return WithoutFragment(shown) == WithoutFragment(url); };
    const std::string standing = StandingAddress(view_.get());
    if (isShownAs(standing)) return url;
    // A script moves the address within the document; the history follows, but also names what is only being loaded.
    WebKitBackForwardListItem* item =
        webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view_.get()));
    const bool hasMoved = isShownAs(TextOf(item ? webkit_back_forward_list_item_get_uri(item) : nullptr));
    if (hasMoved && SiteOf(url) == SiteOf(standing)) return url;
    return std::nullopt;
}

void WebKitBrowser::AnnounceNavigation(WebKitNavigationPolicyDecision* decision)
{
    WebKitNavigationAction* const action = webkit_navigation_policy_decision_get_navigation_action(decision);
    // A redirect is the server's answer to a navigation that was announced already.
    if (webkit_navigation_action_is_redirect(action)) {
        webkit_policy_decision_use(WEBKIT_POLICY_DECISION(decision));
        return;
    }
    WebKitURIRequest* request = webkit_navigation_action_get_request(action);
    const std::string url = TextOf(webkit_uri_request_get_uri(request));
    const std::string method = TextOf(webkit_uri_request_get_http_method(request));
    const auto type = webkit_navigation_action_get_navigation_type(action);
    std::optional<PageAction> cause;
    if (type == WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED) cause = agents_.TakeAction(true, url, method);
    if (type == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED) cause = agents_.TakeAction(false, url, method);
    const bool stays = cause && cause->staysHere;
    if (url.size() <= kLongestAnnounced) announced_.push_back(url);
    if (announced_.size() > kMostAnnounced) announced_.pop_front();
    const auto decide = [this, held = Held(WEBKIT_POLICY_DECISION(decision)), stays](bool goesOn) {
        if (goesOn) {
            webkit_policy_decision_use(held.get());
        } else {
            webkit_policy_decision_ignore(held.get());
        }
        NoteRest(stays ? kMoment : kLongMoment);
    };
    events_.Announce({url, HeadersOf(request), std::move(cause), agents_.Top()}, decide);
}

void WebKitBrowser::WatchDocument(WebKitWebResource* resource)
{
    // Of a frame that loads late nothing else is told when it fails, or when the page takes it out.
    if (webkit_web_view_is_loading(view_.get())) return;
    const std::string url = TextOf(webkit_web_resource_get_uri(resource));
    if (std::find(announced_.begin(), announced_.end(), url) == announced_.end()) return;
    ++documentsLoading_;
    callbacks_.Connect(resource, "finished", [this] { EndDocument(); });  // comes after "failed", too
}

void WebKitBrowser::EndDocument()
{
    documentsLoading_ = std::max(0, documentsLoading_ - 1);
    NoteRest();
}

void WebKitBrowser::NoteRest(unsigned milliseconds)
{
    Callbacks::Cancel(rest_);
    rest_ = callbacks_.After(milliseconds, [this] {
        const bool isLoading = documentsLoading_ > 0 || webkit_web_view_is_loading(view_.get());
        if (!isLoading && !events_.Rest()) NoteRest();
    });
}

void WebKitBrowser::ReportBack()
{
    const bool can = webkit_web_view_can_go_back(view_.get());
    if (canGoBack_ == can) return;
    canGoBack_ = can;
    control_.CommandStateChange.Raise(WebBrowser::kCommandBack, can);
}

}  // namespace velmora
