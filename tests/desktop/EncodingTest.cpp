// The bytes announced for a form in each encoding, against those that the server receives.
#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

#include "tests/desktop/Harness.h"

namespace velmora::test {
namespace {

constexpr char kEncodings[] =
    "UTF-8 UTF-16LE UTF-16BE windows-1250 windows-1251 windows-1252 windows-1253 windows-1254 windows-1255 "
    "windows-1256 windows-1257 windows-1258 windows-874 ISO-8859-2 ISO-8859-3 ISO-8859-4 ISO-8859-5 ISO-8859-6 "
    "ISO-8859-7 ISO-8859-8 ISO-8859-8-I ISO-8859-10 ISO-8859-13 ISO-8859-14 ISO-8859-15 ISO-8859-16 KOI8-R KOI8-U "
    "macintosh IBM866 x-mac-cyrillic x-user-defined Shift_JIS EUC-JP ISO-2022-JP EUC-KR GBK gb18030 Big5 "
    "hz-gb-2312,Big5";

// All characters up to U+FFFF and some beyond, in a row; and some by themselves, since an encoding with
// states sends them otherwise.
constexpr char kTexts[] =
    "const all = [];"
    "for (let c = 1; c < 0x20100; ++c) {"
    "  if (c < 0xd800 || (c > 0xdfff && c < 0x10010) || (c > 0x1f5f0 && c < 0x1f610) || c >= 0x20000)"
    "    all.push(String.fromCodePoint(c));"
    "}"
    "document.forms[0].row.value = all.join('');"
    "document.forms[0].each.value = all.filter((_, i) => i % 97 < 10).join(','); 1";

class Encoding : public DesktopTest {};

TEST_F(Encoding, EveryCharacterInEveryEncodingGoesOutAsAnnounced)
{
    server_.Page("/to.cgi", "arrived");
    std::string announced;
    Form().wbMyBrowser.BeforeNavigate2.Add([&](BeforeNavigate2Event& event) { announced = event.PostData; });
    Show("/form.html",
         "<iframe name='out'></iframe><form method='post' action='to.cgi' target='out'>"
         "<input type='hidden' name='each'><input type='hidden' name='row'></form>");
    Script(kTexts);
    std::istringstream encodings(kEncodings);
    for (std::string encoding; encodings >> encoding;) {
        SCOPED_TRACE(encoding);
        server_.ForgetRequests();
        const std::size_t before = Completed().size();
        Script("document.forms[0].acceptCharset = '" + encoding + "'; document.forms[0].submit(); 1");
        if (!RunUntil([&] { return server_.Bodies("/to.cgi").size() == 1; }, "the submission")) continue;
        // Another submission while the answer still comes in would be lost.
        RunUntil([&] { return Completed().size() > before; }, "the answer");
        // Of two long texts, what stands where they begin to differ.
        const std::string received = server_.Bodies("/to.cgi")[0];
        const auto [a, b] = std::mismatch(announced.begin(), announced.end(), received.begin(), received.end());
        EXPECT_EQ(std::string(a, announced.end()).substr(0, 90), std::string(b, received.end()).substr(0, 90));
    }
}

}  // namespace
}  // namespace velmora::test
