// The proxy of the browser's traffic.
#pragma once

#include <string>

namespace velmora {

enum class ProxyAccess { Direct = 1, Proxy = 3 };

class Proxy {
public:
    virtual ~Proxy() = default;
    /// Applies the setting to this process's browser traffic, for HTTP alone. `proxyText` is
    /// "http=" + address + ":" + port; it is looked at for ProxyAccess::Proxy only. False if it is
    /// no proxy address or the setting could not be applied; the old one stays then.
    virtual bool SetProxy(ProxyAccess access, const std::string& proxyText) = 0;
};

}  // namespace velmora
