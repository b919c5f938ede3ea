#include "platform/webkit/WebKitBrowser.h"

#include <utility>

#include "platform/webkit/Address.h"
#include "platform/webkit/GuideSite.h"
#include "platform/webkit/LoadFailures.h"
#include "platform/webkit/PageArea.h"
#include "platform/webkit/UserSession.h"

namespace velmora {

namespace {

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

WebKitBrowser::WebKitBrowser(WebBrowser& control, Dialogs& dialogs, const Options& options)
    : control_(control), agents_([this](const PagePlace& place, const std::string& url) { OnFinished(place, url); },
                                 [this](const PageAgents::Submission& submission) { OnSubmitted(submission); })
{
    MakeView(options);
    services_ = std::make_unique<ViewServices>(session_, dialogs);
    popups_ = std::make_unique<PopupWindows>(*services_);
    gtk_box_append(GTK_BOX(area_), services_->Downloads().Widget());
    ConnectSignals();
    control_.Attach(this);
}

WebKitBrowser::~WebKitBrowser()
{
    control_.Attach(nullptr);
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
                         return self->agents_.Take(message);
                     }),
                     this);
    g_signal_connect(view_, "decide-policy",
                     G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                                    WebKitBrowser* self) -> gboolean {
                         if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return FALSE;
                         self->AnnounceNavigation(webkit_navigation_policy_decision_get_navigation_action(
                             WEBKIT_NAVIGATION_POLICY_DECISION(decision)));
                         webkit_policy_decision_use(decision);
                         return TRUE;
                     }),
                     this);
    g_signal_connect(
        view_, "create",
        G_CALLBACK(+[](WebKitWebView* view, WebKitNavigationAction*, WebKitBrowser* self) -> WebKitWebView* {
            bool cancel = false;
            self->control_.NewWindow2.Raise(cancel);
            return cancel ? nullptr : self->popups_->Open(view);
        }),
        this);
    // What comes here was broken off: by the user, or by an answer that holds no page.
    g_signal_connect(
        view_, "load-failed",
        G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char*, GError*, WebKitBrowser* self) -> gboolean {
            self->callbacks_.Later([self] {
                if (!webkit_web_view_is_loading(self->view_)) self->ReportStandingDocument();
            });
            return FALSE;
        }),
        this);
    services_->Downloads().Started = [this](WebKitWebView* view) {
        if (view == view_) callbacks_.Later([this] { ReportStandingDocument(); });
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

void WebKitBrowser::Navigate(const std::string& url)
{
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

void WebKitBrowser::OnFinished(const PagePlace& place, const std::string& url)
{
    if (place.channel) place.channel->BeginTurn();
    PageFrame frame(place);
    // What stands in for a page that failed is no page of the site: no record is played on it, and no
    // bookmark is taken of it.
    lastPlace_ = place;
    lastUrl_ = url == kFailureAddress ? "about:blank" : url;
    isAwaited_ = false;
    control_.DocumentComplete.Raise(frame, lastUrl_);
    if (place.channel) place.channel->EndTurn();
}

void WebKitBrowser::OnSubmitted(const PageAgents::Submission& submission)
{
    // The script may have submitted the form in the ordinary way after all; that was announced.
    constexpr std::uint64_t kClockError = 5;
    const PageAction& action = submission.action;
    if (lastSender_ && lastSender_ == submission.place.channel && lastSent_ + kClockError >= submission.time) return;

    SubmittedFrame frame(submission.place, submission.form);
    BeforeNavigate2Event event{
        .pDisp = frame, .URL = action.url, .TargetFrameName = action.target, .PostData = {}, .Headers = {}};
    if (action.method == "post") {
        event.PostData = action.body;
    } else {
        event.URL = action.url.substr(0, action.url.find_first_of("?#")) + "?" + action.body;
    }
    const PagePlace place = submission.place;
    const std::string url = submission.url;
    if (place.channel) place.channel->BeginTurn();
    control_.BeforeNavigate2.Raise(event);
    OnFinished(place, url);
}

void WebKitBrowser::AnnounceNavigation(WebKitNavigationAction* action)
{
    // A redirect is the server's answer to a navigation that was announced already.
    if (webkit_navigation_action_is_redirect(action)) return;
    WebKitURIRequest* request = webkit_navigation_action_get_request(action);
    const std::string url = TextOf(webkit_uri_request_get_uri(request));
    const std::string method = TextOf(webkit_uri_request_get_http_method(request));
    const auto type = webkit_navigation_action_get_navigation_type(action);
    std::optional<PageAction> cause;
    if (type == WEBKIT_NAVIGATION_TYPE_FORM_SUBMITTED) cause = agents_.TakeAction(true, url, method);
    if (type == WEBKIT_NAVIGATION_TYPE_LINK_CLICKED) cause = agents_.TakeAction(false, url, method);

    PageFrame frame(cause ? cause->place : agents_.Top());
    BeforeNavigate2Event event{
        .pDisp = frame, .URL = url, .TargetFrameName = {}, .PostData = {}, .Headers = HeadersOf(request)};
    if (cause) {
        event.TargetFrameName = cause->target;
        if (cause->place.channel) cause->place.channel->BeginTurn();
        event.PostData = cause->body;
        if (cause->isForm) {
            lastSender_ = cause->place.channel;
            lastSent_ = static_cast<std::uint64_t>(g_get_real_time() / 1000);
        }
    }
    isAwaited_ = true;
    control_.BeforeNavigate2.Raise(event);
    if (cause && cause->place.channel) cause->place.channel->EndTurn();
}

void WebKitBrowser::ReportStandingDocument()
{
    if (isAwaited_) OnFinished(PagePlace(lastPlace_), std::string(lastUrl_));
}

void WebKitBrowser::ReportBack()
{
    const bool can = webkit_web_view_can_go_back(view_);
    if (canGoBack_ == can) return;
    canGoBack_ = can;
    control_.CommandStateChange.Raise(WebBrowser::kCommandBack, can);
}

}  // namespace velmora
