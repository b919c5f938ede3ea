// The proxy setting, applied to the engine's network session.
#pragma once

#include <webkit/webkit.h>

#include "platform/Proxy.h"

namespace velmora {

class WebKitProxy : public Proxy {
public:
    /// Until a session is attached every setting fails.
    void Attach(WebKitNetworkSession* session) { session_ = session; }

    bool SetProxy(ProxyAccess access, const std::string& proxyText) override;

private:
    WebKitNetworkSession* session_ = nullptr;
};

}  // namespace velmora
