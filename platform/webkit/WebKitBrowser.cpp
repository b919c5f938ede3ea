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

WebKitSettings* NewSettings()
{
    WebKitSettings* settings = webkit_settings_new();
    // The program's own question decides about windows; the engine must not refuse them ahead of it.
    webkit_settings_set_javascript_can_open_windows_automatically(settings, TRUE);
    return settings;
}

}  // namespace

WebKitBrowser::WebKitBrowser(WebBrowser& control, Dialogs& dialogs, Turns& turns, const Options& options)
    : control_(control), events_(control, turns, time_,
                                 [this](const std::string& url, bool isTop) { return ReportedAddress(url, isTop); }),
      agents_(events_, WaitOnMainLoop, time_)
{
    MakeView(options);
    services_ = std::make_unique<ViewServices>(session_, dialogs, turns);
    popups_ = std::make_unique<PopupWindows>(*services_);
    gtk_box_append(GTK_BOX(area_), services_->Downloads().Widget());
    ConnectSignals();
    ConnectUserActs();
    control_.Attach(this);
}

WebKitBrowser::~WebKitBrowser()
{
    control_.Attach(nullptr);
    if (rest_ != 0) g_source_remove(rest_);
    popups_.reset();
    services_.reset();
    g_signal_handlers_disconnect_by_data(webkit_web_view_get_back_forward_list(view_), this);
    g_signal_handlers_disconnect_by_data(view_, this);
    g_object_unref(area_);
    g_object_unref(view_);
    g_object_unref(session_);
    g_object_unref(context_);
}

void WebKitBrowser::MakeView(const Options& options)
{
    context_ = webkit_web_context_new();
    // Both before the first web process: a path that comes later is fatal.
    webkit_web_context_add_path_to_sandbox(context_, options.agentFolder.c_str(), TRUE);
    webkit_web_context_set_web_process_extensions_directory(context_, options.agentFolder.c_str());
    ServeGuide(context_);
    session_ = NewUserSession(options.dataFolder, options.cacheFolder);
    WebKitSettings* settings = NewSettings();
    view_ = WEBKIT_WEB_VIEW(g_object_ref_sink(g_object_new(
        WEBKIT_TYPE_WEB_VIEW, "web-context", context_, "network-session", session_, "settings", settings, nullptr)));
    g_object_unref(settings);
    area_ = GTK_WIDGET(g_object_ref_sink(NewPageArea(view_)));
}

void WebKitBrowser::ConnectSignals()
{
    services_->Serve(view_);
    g_signal_connect(view_, "user-message-received",
                     G_CALLBACK(+[](WebKitWebView*, WebKitUserMessage* message, WebKitBrowser* self) -> gboolean {
                         const bool isTaken = self->agents_.Take(message);
                         if (isTaken) self->NoteRest();
                         return isTaken;
                     }),
                     this);
    g_signal_connect(view_, "decide-policy",
                     G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                                    WebKitBrowser* self) -> gboolean {
                         if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return FALSE;
                         self->AnnounceNavigation(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
                         return TRUE;
                     }),
                     this);
    g_signal_connect(
        view_, "create",
        G_CALLBACK(+[](WebKitWebView* view, WebKitNavigationAction*, WebKitBrowser* self) -> WebKitWebView* {
            return self->events_.AllowsWindow() ? self->popups_->Open(view) : nullptr;
        }),
        this);
    g_signal_connect_swapped(view_, "notify::is-loading", G_CALLBACK(+[](WebKitBrowser* self) {
                                 self->documentsLoading_ = 0;  // the page's own load waits for its frames
                                 self->NoteRest();
                             }),
                             this);
    g_signal_connect(view_, "resource-load-started",
                     G_CALLBACK(+[](WebKitWebView*, WebKitWebResource* resource, WebKitURIRequest*,
                                    WebKitBrowser* self) { self->WatchDocument(resource); }),
                     this);
    services_->Downloads().Started = [this](WebKitWebView* view) {
        if (view == view_) EndDocument();
    };
    g_signal_connect(view_, "notify::uri", G_CALLBACK(+[](WebKitWebView* view, GParamSpec*, gpointer) {
                         // Within a document the page's script moves the address without a load.
                         if (webkit_web_view_is_loading(view)) return;
                         webkit_web_view_send_message_to_page(view, webkit_user_message_new(wire::kMoved, nullptr),
                                                              nullptr, nullptr, nullptr);
                     }),
                     this);
    g_signal_connect_swapped(webkit_web_view_get_back_forward_list(view_), "changed",
                             G_CALLBACK(+[](WebKitBrowser* self) { self->ReportBack(); }), this);
}

void WebKitBrowser::ConnectUserActs()
{
    GtkEventController* keys = gtk_event_controller_key_new();
    g_signal_connect_swapped(keys, "key-pressed", G_CALLBACK(+[](WebKitBrowser* self) -> gboolean {
                                 self->events_.NoteUserAct();
                                 return FALSE;
                             }),
                             this);
    GtkGesture* clicks = gtk_gesture_click_new();
    gtk_gesture_single_set_button(GTK_GESTURE_SINGLE(clicks), 0);
    g_signal_connect_swapped(clicks, "pressed", G_CALLBACK(+[](WebKitBrowser* self) { self->events_.NoteUserAct(); }),
                             this);
    for (GtkEventController* controller : {keys, GTK_EVENT_CONTROLLER(clicks)}) {
        gtk_event_controller_set_propagation_phase(controller, GTK_PHASE_CAPTURE);
        gtk_widget_add_controller(GTK_WIDGET(view_), controller);
    }
}

void WebKitBrowser::Navigate(const std::string& url)
{
    events_.NoteUserAct();
    ReportBack();
    // A page that hangs would keep the next one waiting.
    if (webkit_web_view_get_is_web_process_responsive(view_)) {
        webkit_web_view_load_uri(view_, LoadableAddress(url).c_str());
    } else {
        EndPage(view_, LoadableAddress(url));
    }
}

void WebKitBrowser::GoBack() { webkit_web_view_go_back(view_); }

std::shared_ptr<Document> WebKitBrowser::CurrentDocument() { return OpenDocument(agents_.Top()); }

std::optional<std::string> WebKitBrowser::ReportedAddress(const std::string& url, bool isTop) const
{
    // What stands in for a page that failed is no page of the site: no record is played on it, and no
    // bookmark is taken of it.
    if (url == kFailureAddress) return "about:blank";
    if (!isTop || url == "about:blank") return url;
    const auto isShownAs = [&](const std::string& shown) { return WithoutFragment(shown) == WithoutFragment(url); };
    const std::string standing = StandingAddress(view_);
    if (isShownAs(standing)) return url;
    // A script moves the address within the document; the history follows, and runs ahead of loads.
    WebKitBackForwardListItem* item =
        webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view_));
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
    const std::shared_ptr<WebKitPolicyDecision> held(WEBKIT_POLICY_DECISION(g_object_ref(decision)), g_object_unref);
    events_.Announce({url, HeadersOf(request), std::move(cause), agents_.Top()}, [this, held, stays](bool goesOn) {
        if (goesOn) {
            webkit_policy_decision_use(held.get());
        } else {
            webkit_policy_decision_ignore(held.get());
        }
        NoteRest(stays ? kMoment : kLongMoment);
    });
}

void WebKitBrowser::WatchDocument(WebKitWebResource* resource)
{
    // Of a frame that loads late nothing else is told when it fails, or when the page takes it out.
    if (webkit_web_view_is_loading(view_)) return;
    const std::string url = TextOf(webkit_web_resource_get_uri(resource));
    if (std::find(announced_.begin(), announced_.end(), url) == announced_.end()) return;
    ++documentsLoading_;
    callbacks_.Connect(resource, "finished",
                       G_CALLBACK((+[](WebKitWebResource*, WebKitBrowser* self) { self->EndDocument(); })), this);
    callbacks_.Connect(resource, "failed",
                       G_CALLBACK((+[](WebKitWebResource*, GError*, WebKitBrowser* self) { self->EndDocument(); })),
                       this);
}

void WebKitBrowser::EndDocument()
{
    documentsLoading_ = std::max(0, documentsLoading_ - 1);
    NoteRest();
}

void WebKitBrowser::NoteRest(unsigned milliseconds)
{
    if (rest_ != 0) g_source_remove(rest_);
    rest_ = g_timeout_add(
        milliseconds,
        [](gpointer data) -> gboolean {
            auto* self = static_cast<WebKitBrowser*>(data);
            self->rest_ = 0;
            const bool isLoading = self->documentsLoading_ > 0 || webkit_web_view_is_loading(self->view_);
            if (!isLoading && !self->events_.Rest()) self->NoteRest();
            return G_SOURCE_REMOVE;
        },
        this);
}

void WebKitBrowser::ReportBack()
{
    const bool can = webkit_web_view_can_go_back(view_);
    if (canGoBack_ == can) return;
    canGoBack_ = can;
    control_.CommandStateChange.Raise(WebBrowser::kCommandBack, can);
}

}  // namespace velmora
