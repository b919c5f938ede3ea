#include "platform/webkit/PopupWindow.h"

namespace velmora {

namespace {

constexpr int kWidth = 720;
constexpr int kHeight = 540;

void ShowWindow(WebKitWebView* view, gpointer window)
{
    GdkRectangle wanted{};
    webkit_window_properties_get_geometry(webkit_web_view_get_window_properties(view), &wanted);
    gtk_window_set_default_size(GTK_WINDOW(window), wanted.width > 0 ? wanted.width : kWidth,
                                wanted.height > 0 ? wanted.height : kHeight);
    gtk_window_present(GTK_WINDOW(window));
}

void ShowTitle(WebKitWebView* view, GParamSpec*, gpointer window)
{
    const char* title = webkit_web_view_get_title(view);
    gtk_window_set_title(GTK_WINDOW(window), title ? title : "");
}

}  // namespace

WebKitWebView* OpenPopup(WebKitWebView* opener)
{
    auto* view = WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                                              webkit_web_view_get_settings(opener), nullptr));
    GtkWidget* window = gtk_window_new();
    gtk_window_set_child(GTK_WINDOW(window), GTK_WIDGET(view));
    g_signal_connect(view, "ready-to-show", G_CALLBACK(ShowWindow), window);
    g_signal_connect(view, "notify::title", G_CALLBACK(ShowTitle), window);
    g_signal_connect_swapped(view, "close", G_CALLBACK(gtk_window_destroy), window);
    g_signal_connect(
        view, "create",
        G_CALLBACK(+[](WebKitWebView* from, WebKitNavigationAction*, gpointer) { return OpenPopup(from); }), nullptr);
    return view;
}

}  // namespace velmora
