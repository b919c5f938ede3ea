#include "platform/webkit/chrome/PopupWindow.h"

#include <string>
#include <utility>

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

void ShowWindow(WebKitWebView* view, GtkWindow* window)
{
    GdkRectangle wanted{};
    webkit_window_properties_get_geometry(webkit_web_view_get_window_properties(view), &wanted);
    const bool hasWish = wanted.width > kLeast || wanted.height > kLeast;
    gtk_window_set_default_size(window, hasWish ? wanted.width : kWidth, hasWish ? wanted.height : kHeight);
    gtk_window_present(window);
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
    // A window that something still holds is gone from the screen, and tells of its end later.
    for (GtkWindow* window : std::exchange(windows_, {})) gtk_window_destroy(window);
}

WebKitWebView* PopupWindows::Open(WebKitWebView* opener)
{
    if (windows_.size() >= kMostWindows) return nullptr;
    auto* view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                                              webkit_web_view_get_settings(opener), nullptr));
    CountAsOpener(view, opener);
    // Before the services, which let nobody else see what is another program's.
    const auto decide = [this](WebKitWebView* from, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
        if (OpensAnotherProgram(decision, type)) CloseIfEmpty(from);
    };
    callbacks_.Connect(view, "decide-policy", decide);
    services_.Serve(view);
    auto* window = GTK_WINDOW(gtk_window_new());
    gtk_widget_set_name(GTK_WIDGET(window), "Popup");
    gtk_widget_add_css_class(GTK_WIDGET(window), "velmora");
    gtk_window_set_child(window, NewPageArea(view));
    windows_.push_back(window);
    ShowTitle(view, window);
    Watch(view, window);
    return view;
}

void PopupWindows::Watch(WebKitWebView* view, GtkWindow* window)
{
    Connect(
        view, "ready-to-show", [window](WebKitWebView* from) { ShowWindow(from, window); }, window);
    Connect(
        view, "notify::title", [window](WebKitWebView* from) { ShowTitle(from, window); }, window);
    const auto changed = [window](WebKitWebView* from, WebKitLoadEvent event) {
        if (event == WEBKIT_LOAD_COMMITTED) ShowTitle(from, window);
    };
    Connect(view, "load-changed", changed, window);
    callbacks_.Connect(window, "destroy", [this](GtkWindow* gone) { windows_.remove(gone); });
    callbacks_.Connect(view, "close", [this](WebKitWebView* from) { Close(from); });
    // Nobody is asked about windows of windows; those that the user's own click opens are let through.
    callbacks_.Connect(view, "create", [this](WebKitWebView* from, WebKitNavigationAction* action) {
        return webkit_navigation_action_is_user_gesture(action) ? Open(from) : nullptr;
    });
    callbacks_.Connect(view, "load-failed", [this](WebKitWebView* from, WebKitLoadEvent, const char*, GError* error) {
        const bool isSaved =
            g_error_matches(error, WEBKIT_POLICY_ERROR, WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
        if (isSaved) CloseIfEmpty(from);
    });
}

void PopupWindows::CloseIfEmpty(WebKitWebView* view)
{
    if (!webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view))) Close(view);
}

void PopupWindows::Close(WebKitWebView* view)
{
    // Not in the middle of the view's own signal.
    callbacks_.Later([held = Held(view)] {
        if (GtkRoot* window = gtk_widget_get_root(GTK_WIDGET(held.get()))) gtk_window_destroy(GTK_WINDOW(window));
    });
}

}  // namespace velmora
