#include "platform/webkit/engine/StandingPage.h"

#include "platform/glib/Callbacks.h"

namespace velmora {

namespace {

constexpr char kStanding[] = "velmora-standing";

void OnLoadChanged(WebKitWebView* view, WebKitLoadEvent event)
{
    if (event != WEBKIT_LOAD_COMMITTED) return;
    // The user may have sent the view on already, which then gives the address that comes next.
    WebKitBackForwardListItem* item =
        webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view));
    const char* address = item ? webkit_back_forward_list_item_get_uri(item) : webkit_web_view_get_uri(view);
    g_object_set_data_full(G_OBJECT(view), kStanding, g_strdup(address), g_free);
}

}  // namespace

void WatchStandingPage(WebKitWebView* view) { Connect(view, "load-changed", OnLoadChanged); }

void CountAsOpener(WebKitWebView* view, WebKitWebView* opener)
{
    g_object_set_data_full(G_OBJECT(view), kStanding, g_strdup(StandingAddress(opener).c_str()), g_free);
}

std::string StandingAddress(WebKitWebView* view)
{
    const auto* address = static_cast<const char*>(g_object_get_data(G_OBJECT(view), kStanding));
    return address ? address : "";
}

std::string SiteOf(const std::string& address)
{
    // Whose an empty page is cannot be told by its address.
    if (address.empty() || address.starts_with("about:")) return address;
    const auto origin = Owned(webkit_security_origin_new_for_uri(address.c_str()), webkit_security_origin_unref);
    const std::string site = OwnedText(webkit_security_origin_to_string(origin.get()));
    return site.empty() ? address : site;
}

std::string StandingSite(WebKitWebView* view) { return SiteOf(StandingAddress(view)); }

}  // namespace velmora
