#include "platform/webkit/chrome/PopupWindow.h"

#include <string>

#include "platform/webkit/chrome/OtherPrograms.h"
#include "platform/webkit/chrome/PageArea.h"
#include "platform/webkit/engine/StandingPage.h"

namespace velmora {

namespace {

constexpr int kWidth = 720;
constexpr int kHeight = 540;
// What the engine gives at least, a page's wish or none: nothing can be read in so small a window.
constexpr int kLeast = 100;
// More than anybody looks at; a page that goes on opening windows gets no further.
constexpr std::size_t kMostWindows = 20;

void ShowWindow(WebKitWebView* view, gpointer window)
{
    GdkRectangle wanted{};
    webkit_window_properties_get_geometry(webkit_web_view_get_window_properties(view), &wanted);
    const bool hasWish = wanted.width > kLeast || wanted.height > kLeast;
    gtk_window_set_default_size(GTK_WINDOW(window), hasWish ? wanted.width : kWidth, hasWish ? wanted.height : kHeight);
    gtk_window_present(GTK_WINDOW(window));
}

// The window has no address line, so its title tells where the page comes from: first, where a long
// title of the page cannot push it out of sight.
void ShowTitle(WebKitWebView* view, GtkWindow* window)
{
    const char* title = webkit_web_view_get_title(view);
    const std::string site = StandingSite(view);
    const std::string text = site + " - " + (title ? title : "");
    gtk_window_set_title(window, text.c_str());
}

void OnTitle(WebKitWebView* view, GParamSpec*, gpointer window) { ShowTitle(view, GTK_WINDOW(window)); }

void OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event, gpointer window)
{
    if (event == WEBKIT_LOAD_COMMITTED) ShowTitle(view, GTK_WINDOW(window));
}

/// Whether a script opens the window for, or sends it to, what the engine cannot show.
bool OpensAnotherProgram(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type)
{
    if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION) return false;
    WebKitNavigationAction* action =
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    return webkit_navigation_action_get_navigation_type(action) == WEBKIT_NAVIGATION_TYPE_OTHER &&
           IsForAnotherProgram(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
}

}  // namespace

PopupWindows::~PopupWindows()
{
    while (!windows_.empty()) gtk_window_destroy(windows_.front());
}

WebKitWebView* PopupWindows::Open(WebKitWebView* opener)
{
    if (windows_.size() >= kMostWindows) return nullptr;
    auto* view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                                              webkit_web_view_get_settings(opener), nullptr));
    CountAsOpener(view, opener);
    // Ahead of the services, which let nobody else see what is another program's.
    const auto decide = +[](WebKitWebView* from, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                            PopupWindows* self) -> gboolean {
        if (OpensAnotherProgram(decision, type)) self->CloseIfEmpty(from);
        return FALSE;
    };
    callbacks_.Connect(view, "decide-policy", G_CALLBACK(decide), this);
    services_.Serve(view);
    GtkWidget* window = gtk_window_new();
    gtk_widget_set_name(window, "Popup");
    gtk_widget_add_css_class(window, "velmora");
    gtk_window_set_child(GTK_WINDOW(window), NewPageArea(view));
    windows_.push_back(GTK_WINDOW(window));
    ShowTitle(view, GTK_WINDOW(window));
    Connect(view, window);
    return view;
}

void PopupWindows::Connect(WebKitWebView* view, GtkWidget* window)
{
    g_signal_connect_object(view, "ready-to-show", G_CALLBACK(ShowWindow), window, GConnectFlags(0));
    g_signal_connect_object(view, "notify::title", G_CALLBACK(OnTitle), window, GConnectFlags(0));
    g_signal_connect_object(view, "load-changed", G_CALLBACK(OnLoadChanged), window, GConnectFlags(0));
    callbacks_.Connect(window, "destroy",
                       G_CALLBACK(+[](GtkWindow* gone, PopupWindows* self) { self->windows_.remove(gone); }), this);
    const auto close = +[](WebKitWebView* from, PopupWindows* self) { self->Close(from); };
    callbacks_.Connect(view, "close", G_CALLBACK(close), this);
    // Nobody is asked about windows of windows; those that the user's own click opens are let through.
    const auto create = +[](WebKitWebView* from, WebKitNavigationAction* action, PopupWindows* self) {
        return webkit_navigation_action_is_user_gesture(action) ? self->Open(from) : nullptr;
    };
    callbacks_.Connect(view, "create", G_CALLBACK(create), this);
    const auto failed =
        +[](WebKitWebView* from, WebKitLoadEvent, const char*, GError* error, PopupWindows* self) -> gboolean {
        const bool isSaved =
            g_error_matches(error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
        if (isSaved) self->CloseIfEmpty(from);
        return FALSE;
    };
    callbacks_.Connect(view, "load-failed", G_CALLBACK(failed), this);
}

void PopupWindows::CloseIfEmpty(WebKitWebView* view)
{
    if (!webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view))) Close(view);
}

void PopupWindows::Close(WebKitWebView* view)
{
    // Not in the middle of the view's own signal.
    const std::shared_ptr<WebKitWebView> held(WEBKIT_WEB_VIEW(g_object_ref(view)), g_object_unref);
    callbacks_.Later([held] {
        if (GtkRoot* window = gtk_widget_get_root(GTK_WIDGET(held.get()))) gtk_window_destroy(GTK_WINDOW(window));
    });
}

}  // namespace velmora
