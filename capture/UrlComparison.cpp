#include "platform/text/Search.h"
#include "shell/frmBrowser.h"

namespace velmora {

bool frmBrowser::UrlsMatch(std::string& a, std::string& b)
{
    if (EqualIgnoringCase(a, b)) return true;
    const std::string fileA = GetUrlFileName(a);
    const std::string fileB = GetUrlFileName(b);
    return !fileA.empty() && !fileB.empty() && fileA == fileB;
}

std::string frmBrowser::GetUrlFileName(std::string& s)
{
    s = LowerCase(s);
    return GetLastSegment(s.substr(0, s.find('?')));
}

std::string frmBrowser::GetLastSegment(const std::string& s)
{
    const std::size_t slash = s.rfind('/');
    return slash == std::string::npos ? s : s.substr(slash + 1);
}

std::string frmBrowser::StripQuery(const std::string& s) { return LowerCase(s.substr(0, s.find('?'))); }

}  // namespace velmora
