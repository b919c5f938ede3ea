#include "platform/webkit/engine/WebKitProxy.h"

#include <string_view>

#include "platform/glib/Handle.h"

namespace velmora {

namespace {

/// Whether the engine takes the address for one with a host; it complains loudly about any other.
bool HasHost(const std::string& uri)
{
    const auto origin = Owned(webkit_security_origin_new_for_uri(uri.c_str()), webkit_security_origin_unref);
    const char* host = webkit_security_origin_get_host(origin.get());
    return host && *host;
}

/// The address of a proxy, "http://host:port", from "http=host:port"; empty if the text is none.
std::string ProxyUri(std::string_view text)
{
    constexpr std::string_view kPrefix = "http=";
    if (!text.starts_with(kPrefix)) return {};
    const std::string uri = "http://" + std::string(text.substr(kPrefix.size()));
    const auto held = Owned(g_uri_parse(uri.c_str(), G_URI_FLAGS_NONE, nullptr), g_uri_unref);
    if (!held) return {};
    GUri* const parsed = held.get();
    const char* host = g_uri_get_host(parsed);
    const char* path = g_uri_get_path(parsed);
    const bool whole = host && *host && g_uri_get_port(parsed) > 0 && (!path || !*path) &&
                       !g_uri_get_userinfo(parsed) && !g_uri_get_query(parsed) && !g_uri_get_fragment(parsed) &&
                       std::string_view(host).find_first_of(" \t\r\n") == std::string_view::npos;
    return whole && HasHost(uri) ? uri : std::string();
}

}  // namespace

bool WebKitProxy::SetProxy(ProxyAccess access, const std::string& proxyText)
{
    if (!session_) return false;
    if (access == ProxyAccess::Direct) {
        webkit_network_session_set_proxy_settings(session_, WEBKIT_NETWORK_PROXY_MODE_NO_PROXY, nullptr);
        return true;
    }
    const std::string uri = ProxyUri(proxyText);
    if (uri.empty()) return false;
    const auto settings =
        Owned(webkit_network_proxy_settings_new(nullptr, nullptr), webkit_network_proxy_settings_free);
    webkit_network_proxy_settings_add_proxy_for_scheme(settings.get(), "http", uri.c_str());
    webkit_network_session_set_proxy_settings(session_, WEBKIT_NETWORK_PROXY_MODE_CUSTOM, settings.get());
    return true;
}

}  // namespace velmora
