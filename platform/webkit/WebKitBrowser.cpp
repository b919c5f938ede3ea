#include "platform/webkit/WebKitBrowser.h"

#include <utility>

#include "platform/webkit/Address.h"
#include "platform/webkit/GuideSite.h"
#include "platform/webkit/PopupWindow.h"

namespace velmora {

namespace {

/// The address that the document of a failure page has; the view goes on showing the one that failed.
constexpr char kFailureAddress[] = "velmora://error/";

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

WebKitBrowser::WebKitBrowser(WebBrowser& control, const Options& options)
    : control_(control), agents_([this](const PagePlace& place, const std::string& url) { OnFinished(place, url); })
{
    MakeView(options);
    ConnectSignals();
    control_.Attach(this);
}

WebKitBrowser::~WebKitBrowser()
{
    control_.Attach(nullptr);
    g_signal_handlers_disconnect_by_data(webkit_web_view_get_back_forward_list(view_), this);
    g_signal_handlers_disconnect_by_data(view_, this);
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
    session_ = options.dataFolder.empty()
                   ? webkit_network_session_new_ephemeral()
                   : webkit_network_session_new(options.dataFolder.c_str(), options.cacheFolder.c_str());
    if (!options.dataFolder.empty()) {
        webkit_cookie_manager_set_persistent_storage(webkit_network_session_get_cookie_manager(session_),
                                                     (options.dataFolder + "/cookies.sqlite").c_str(),
                                                     WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    }
    WebKitSettings* settings = NewSettings();
    view_ = WEBKIT_WEB_VIEW(g_object_ref_sink(g_object_new(
        WEBKIT_TYPE_WEB_VIEW, "web-context", context_, "network-session", session_, "settings", settings, nullptr)));
    g_object_unref(settings);
}

void WebKitBrowser::ConnectSignals()
{
    g_signal_connect(view_, "user-message-received",
                     G_CALLBACK(+[](WebKitWebView*, WebKitUserMessage* message, WebKitBrowser* self) -> gboolean {
                         return self->agents_.Take(message);
                     }),
                     this);
    g_signal_connect(view_, "decide-policy",
                     G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                                    WebKitBrowser* self) -> gboolean {
                         if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
                             return self->DecideResponse(WEBKIT_RESPONSE_POLICY_DECISION(decision));
                         }
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
            return cancel ? nullptr : OpenPopup(view);
        }),
        this);
    g_signal_connect(view_, "load-failed",
                     G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char* uri, GError* error,
                                    WebKitBrowser* self) -> gboolean {
                         // A load that the user or a download broke off has not failed.
                         if (g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
                             g_error_matches(error, WEBKIT_POLICY_ERROR,
                                             WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE)) {
                             return FALSE;
                         }
                         self->ShowFailure(TextOf(uri), TextOf(error->message));
                         return TRUE;
                     }),
                     this);
    g_signal_connect(view_, "load-failed-with-tls-errors",
                     G_CALLBACK(+[](WebKitWebView*, const char* uri, GTlsCertificate*, GTlsCertificateFlags,
                                    WebKitBrowser* self) -> gboolean {
                         self->ShowFailure(TextOf(uri),
                                           "The site's certificate cannot be trusted, so nothing was sent to it.");
                         return TRUE;
                     }),
                     this);
    g_signal_connect(view_, "web-process-terminated",
                     G_CALLBACK(+[](WebKitWebView* view, WebKitWebProcessTerminationReason, WebKitBrowser* self) {
                         self->ShowFailure(TextOf(webkit_web_view_get_uri(view)),
                                           "The page stopped working and was closed. Press Go to load it again.");
                     }),
                     this);
    g_signal_connect_swapped(webkit_web_view_get_back_forward_list(view_), "changed",
                             G_CALLBACK(+[](WebKitBrowser* self) { self->ReportBack(); }), this);
}

void WebKitBrowser::Navigate(const std::string& url)
{
    ReportBack();
    webkit_web_view_load_uri(view_, LoadableAddress(url).c_str());
}

void WebKitBrowser::GoBack() { webkit_web_view_go_back(view_); }

std::shared_ptr<Document> WebKitBrowser::CurrentDocument() { return OpenDocument(agents_.Top()); }

void WebKitBrowser::OnFinished(const PagePlace& place, const std::string& url)
{
    if (place.channel) place.channel->BeginTurn();
    PageFrame frame(place);
    // What stands in for a page that failed is no page of the site: no record is played on it, and no
    // bookmark is taken of it.
    control_.DocumentComplete.Raise(frame, url == kFailureAddress ? "about:blank" : url);
    if (place.channel) place.channel->EndTurn();
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
        if (cause->method == "post") event.PostData = EncodeForm(cause->entries, cause->encoding);
    }
    control_.BeforeNavigate2.Raise(event);
}

bool WebKitBrowser::DecideResponse(WebKitResponsePolicyDecision* decision)
{
    if (webkit_response_policy_decision_is_mime_type_supported(decision)) return false;
    if (!webkit_response_policy_decision_is_main_frame_main_resource(decision)) return false;
    WebKitURIResponse* response = webkit_response_policy_decision_get_response(decision);
    const std::string kind = TextOf(webkit_uri_response_get_mime_type(response));
    const std::string address = TextOf(webkit_uri_response_get_uri(response));
    webkit_policy_decision_ignore(WEBKIT_POLICY_DECISION(decision));
    ShowFailure(address, "It is no page but a file of the type " + kind + ", which cannot be shown.");
    return true;
}

void WebKitBrowser::ShowFailure(const std::string& address, const std::string& reason)
{
    webkit_web_view_load_alternate_html(view_, FailurePage(address, reason).c_str(), address.c_str(), kFailureAddress);
}

void WebKitBrowser::ReportBack()
{
    const bool can = webkit_web_view_can_go_back(view_);
    if (canGoBack_ == can) return;
    canGoBack_ = can;
    control_.CommandStateChange.Raise(WebBrowser::kCommandBack, can);
}

}  // namespace velmora
