#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "platform/text/Search.h"
#include "shell/frmBrowser.h"

namespace velmora {

TEST(UrlComparison, FileNameOfAnAddress)
{
    const std::pair<std::string, std::string> table[] = {{"HTTP://Host/Dir/Page.CGI?A=1", "page.cgi"},
                                                         {"https://host/dir/page.asp?next=/a/b?c", "page.asp"},
                                                         {"http://host/dir/", ""},
                                                         {"http://host?x=1", "host"},
                                                         {"http://host/page.html#top", "page.html#top"},
                                                         {"\"/a.cgi\"", "a.cgi\""},
                                                         {"about:blank", "about:blank"},
                                                         {"?x=1", ""},
                                                         {"dir\\Page.cgi", "dir\\page.cgi"}};
    for (const auto& [address, fileName] : table) {
        std::string s = address;
        EXPECT_EQ(frmBrowser::GetUrlFileName(s), fileName) << address;
    }
    std::string s = "HTTP://Host/Page.CGI?A=B";
    frmBrowser::GetUrlFileName(s);
    EXPECT_EQ(s, "http://host/page.cgi?a=b") << "the caller's text goes to lower case, query included";
    EXPECT_EQ(frmBrowser::StripQuery("http://Host/Page.cgi#B?A=1?b"), "http://host/page.cgi#b");
}

TEST(UrlComparison, AddressesMatchAsWholesOrByTheirFileNames)
{
    const struct {
        std::string a;
        std::string b;
        bool match;
        bool lowered;
    } table[] = {
        {"http://host/A/X.CGI", "http://host/a/x.cgi", true, false},
        {"http://Host/a/", "http://host/a/", true, false},
        {"http://One/x.cgi", "http://two/x.cgi", true, true},
        {"http://Host/x.cgi?p=1", "http://host/x.cgi?p=2", true, true},
        {"http://Host/a/", "http://host/b/", false, true},
        {"http://Host/", "http://host/?x=1", false, true},
        {"http://Host/x.cgi", "\"/x.cgi\"", false, true},
        {"http://Host/x.cgi", "*frame*", false, true},
    };
    for (const auto& [a, b, match, lowered] : table) {
        std::string first = a;
        std::string second = b;
        EXPECT_EQ(frmBrowser::UrlsMatch(first, second), match) << a << " and " << b;
        EXPECT_EQ(first, lowered ? LowerCase(a) : a);
        EXPECT_EQ(second, lowered ? LowerCase(b) : b);
    }
}

}  // namespace velmora
