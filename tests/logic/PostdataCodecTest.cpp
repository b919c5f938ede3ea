#include "platform/CodePage.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

class PostdataCodec : public LogicHarness {
protected:
    /// Splits into the program's table and shows it as "name=value" lines.
    Lines Split(const std::string& s)
    {
        Program().SplitPostdata(s, Program().gstrFieldNames, Program().gstrFieldValues);
        Lines lines;
        for (std::size_t i = 0; i < Program().gstrFieldNames.size(); ++i) {
            lines.push_back(Program().gstrFieldNames[i] + "=" + Program().gstrFieldValues[i]);
        }
        return lines;
    }

    static std::string Pairs(int count)
    {
        std::string s;
        for (int i = 1; i <= count; ++i) s += (i > 1 ? "&f" : "f") + std::to_string(i) + "=v";
        return s;
    }
};

constexpr char kTooMany[] = "Warning: Only maximum 20 fields can be recorded!";

TEST_F(PostdataCodec, OnlyPiecesWithAnEqualsSignArePairs)
{
    EXPECT_EQ(Split("a=1&b=2"), (Lines{"a=1", "b=2"}));
    EXPECT_EQ(Split("a=1&&b=2&"), (Lines{"a=1", "b=2"}));
    EXPECT_EQ(Split("&a=1"), Lines{"a=1"});
    EXPECT_EQ(Split("flag&a=1=2&=x&b="), (Lines{"a=1=2", "=x", "b="}));
    EXPECT_EQ(Program().gstrFieldNames[1], "");
    EXPECT_EQ(Split("%41=%42"), Lines{"%41=%42"}) << "a split decodes nothing";
    EXPECT_EQ(frmBrowser::JoinPostdata({"a", "", "b"}, {"1=2", "x", ""}), "a=1=2&=x&b=");
    EXPECT_THROW(frmBrowser::JoinPostdata({}, {}), std::logic_error);
}

TEST_F(PostdataCodec, ATextWithoutAPairLeavesTheTableAlone)
{
    EXPECT_EQ(Split("no pair"), Lines{}) << "no split has filled the table";
    Split("a=1&b=2&c=3");
    EXPECT_EQ(Split(""), (Lines{"a=1", "b=2", "c=3"}));
    EXPECT_EQ(Split("x&y"), (Lines{"a=1", "b=2", "c=3"}));
    EXPECT_EQ(Split("z=1"), Lines{"z=1"}) << "one pair leaves nothing of an earlier table";
}

TEST_F(PostdataCodec, SixtyPairsAreTheLimit)
{
    const struct {
        std::string text;
        std::size_t entries;
        bool warning;
    } table[] = {
        {Pairs(60), 60, false},
        {Pairs(61), 60, true},
        {Pairs(60) + "&", 60, false},
        {Pairs(60) + "&&", 60, true},
        {Pairs(60) + "&flag", 60, false},
        {"x&y&z&" + Pairs(60), 60, false},
        {Pairs(59) + "&x&l=1", 60, false},
        {Pairs(200), 60, true},
    };
    for (const auto& [text, entries, warning] : table) {
        Program().StatusBar1.Panels(1).Text = "before";
        EXPECT_EQ(Split(text).size(), entries) << text;
        EXPECT_EQ(Status(), warning ? kTooMany : "before") << text;
    }
}

TEST_F(PostdataCodec, Encoding)
{
    const struct {
        std::string text;
        std::string encoded;
    } table[] = {
        {"abcXYZ019", "abcXYZ019"},
        {"a b", "a%20b"},
        {"a+b", "a%2Bb"},
        {"50%", "50%25"},
        {"a&b=c", "a%26b%3Dc"},
        {"-_.*", "%2D%5F%2E%2A"},
        {"a\r\nb", "a%0D%0Ab"},
        {"\t", "%09"},
        {"   x   ", "x"},
        {" \tx ", "%09x"},
        {"   ", ""},
        {"", ""},
        {"é", "%E9"},
        {"€", "%80"},
        {"日", "%u65E5"},
        {"😀", "%uD83D%uDE00"},
    };
    for (const auto& [text, encoded] : table) EXPECT_EQ(frmBrowser::EncodeFieldText(text), encoded) << text;
}

TEST_F(PostdataCodec, Decoding)
{
    const struct {
        std::string text;
        std::string decoded;
    } table[] = {
        {"a+b%20c", "a b c"}, {"a%2Bb", "a b"},      {"a%2bb", "a+b"}, {"%3d%3D", "=="}, {"%E9%80", "é€"},
        {"%u65E5", "日"},     {"%uD83D%uDE00", "😀"}, {"%C3%A9", "Ã©"}, {"100%", "100%"}, {"%4", "%4"},
        {"%zz%", "%zz%"},     {"%u12", "%u12"},      {"é+日", "é 日"}, {"", ""},
    };
    for (const auto& [text, decoded] : table) EXPECT_EQ(frmBrowser::DecodeFieldText(text), decoded) << text;
    EXPECT_EQ(frmBrowser::DecodeFieldText("a%00b"), std::string("a\0b", 3));
}

TEST_F(PostdataCodec, ATextOfAnyScriptComesBack)
{
    for (int code = 1; code < 256; ++code) {
        std::string text = "x";
        AppendCharacter(text, CharacterOfCode(static_cast<unsigned char>(code)));
        text += "x";
        const std::string expected = text == "x+x" ? "x x" : text;
        EXPECT_EQ(frmBrowser::DecodeFieldText(frmBrowser::EncodeFieldText(text)), expected) << code;
    }
    const std::string mixed = "Ωmega Привет 日本 עברית 😀🏳️‍🌈 %uXX";
    EXPECT_EQ(frmBrowser::DecodeFieldText(frmBrowser::EncodeFieldText(mixed)), mixed);
    for (const char* broken : {"%uD83D", "%uDE00x", "\xFF\xC3", "%uD83D%uD83D", "\xED\xA0\x80"}) {
        frmBrowser::EncodeFieldText(frmBrowser::DecodeFieldText(broken));
    }
}

TEST(CodePage, EveryByteHasACharacterAndComesBack)
{
    std::string bytes;
    for (int code = 0; code < 256; ++code) bytes += static_cast<char>(code);
    EXPECT_EQ(BytesOfText(TextOfBytes(bytes)), bytes);
    EXPECT_EQ(CharactersOf(TextOfBytes(bytes)).size(), 256u);
    EXPECT_EQ(BytesOfText("a日b😀c"), "a?b?c");
    EXPECT_EQ(BytesOfText("\xE9 \xC3"), "\xE9 \xC3") << "what is no UTF-8 is taken byte by byte";
    EXPECT_EQ(LowerCase("ABC ÀÉ xyz"), "abc àé xyz");
    EXPECT_EQ(FindIgnoringCase("x<FoRm <form ", "<FORM ", 2), 7u);
}

}  // namespace velmora::test
