#include "platform/document/Address.h"

#include <cstddef>
#include <string_view>

namespace velmora {

namespace {

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Whether the text begins with a scheme (RFC 3986) rather than with a host and a port.
bool HasScheme(std::string_view address)
{
    const std::size_t colon = address.find(':');
    if (colon == std::string_view::npos || colon == 0 || !IsLetter(address[0])) return false;
    for (const char c : address.substr(0, colon)) {
        if (!IsLetter(c) && !IsDigit(c) && c != '+' && c != '-' && c != '.') return false;
    }
    return colon + 1 == address.size() || !IsDigit(address[colon + 1]);
}

}  // namespace

std::string LoadableAddress(const std::string& typed)
{
    constexpr char kBlanks[] = " \t\r\n\f\v";
    const std::size_t first = typed.find_first_not_of(kBlanks);
    if (first == std::string::npos) return "about:blank";
    std::string address = typed.substr(first, typed.find_last_not_of(kBlanks) - first + 1);
    if (HasScheme(address)) return address;
    if (address.starts_with("//")) return "http:" + address;
    if (address.starts_with("/")) return "file://" + address;
    return "http://" + address;
}

std::string WithoutFragment(const std::string& url) { return url.substr(0, url.find('#')); }

std::string WithoutQuery(const std::string& url) { return url.substr(0, url.find_first_of("?#")); }

}  // namespace velmora
