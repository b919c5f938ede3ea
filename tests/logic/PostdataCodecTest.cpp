#include "platform/text/CodePage.h"
#include "platform/text/Search.h"
#include "tests/support/LogicHarness.h"

namespace velmora::test {

class PostdataCodec : public LogicHarness {
protected:
    /// Splits into the program's table and shows it as "name: value" lines.
    Lines Split(const std::string& s)
    {
        Program().SplitPostdata(s, Program().gstrFieldNames, Program().gstrFieldValues);
        Lines lines;
        for (std::size_t i = 0; i < Program().gstrFieldNames.size(); ++i) {
            lines.push_back(Program().gstrFieldNames[i] + ": " + Program().gstrFieldValues[i]);
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

TEST_F(PostdataCodec, OnlyPiecesWithAnEqualsSignArePairs)
{
    EXPECT_EQ(Split("no pair"), Lines{}) << "no split has filled the table";
    EXPECT_EQ(Split("a=1&&b=2&"), (Lines{"a: 1", "b: 2"}));
    for (const char* none : {"", "x&y"}) EXPECT_EQ(Split(none), (Lines{"a: 1", "b: 2"})) << "the table is left alone";
    EXPECT_EQ(Split("&a=1"), Lines{"a: 1"});
    EXPECT_EQ(Split("flag&a=1=2&=x&b="), (Lines{"a: 1=2", ": x", "b: "}));
    EXPECT_EQ(Split("%41=%42"), Lines{"%41: %42"}) << "a split decodes nothing";
    EXPECT_EQ(frmBrowser::JoinPostdata({"a", "", "b"}, {"1=2", "x", ""}), "a=1=2&=x&b=");
    EXPECT_THROW(frmBrowser::JoinPostdata({}, {}), std::logic_error);
}

TEST_F(PostdataCodec, SixtyPairsAreTheLimit)
{
    const std::tuple<std::string, std::size_t, bool> table[] = {
        {Pairs(60), 60, false},           {Pairs(61), 60, true},
        {Pairs(60) + "&", 60, false},     {Pairs(60) + "&&", 60, true},
        {Pairs(60) + "&flag", 60, false}, {"x&y&" + Pairs(60), 60, false},
        {Pairs(59) + "&x&l=1", 60, false}};
    for (const auto& [text, entries, warning] : table) {
        Program().StatusBar1.Panels(1).Text = "before";
        EXPECT_EQ(Split(text).size(), entries) << text;
        EXPECT_EQ(Status(), warning ? "Warning: Only maximum 20 fields can be recorded!" : "before") << text;
    }
}

TEST_F(PostdataCodec, LettersAndDigitsStandForThemselvesAndAllElseIsEscaped)
{
    EXPECT_EQ(frmBrowser::EncodeFieldText("  aZ09 50%&b=c+-_.*\r\né€日😀\t  "),
              "aZ09%2050%25%26b%3Dc%2B%2D%5F%2E%2A%0D%0A%E9%80%u65E5%uD83D%uDE00%09");
    EXPECT_EQ(frmBrowser::EncodeFieldText("\t "), "%09");
    EXPECT_EQ(frmBrowser::EncodeFieldText("   "), "");
    EXPECT_EQ(frmBrowser::DecodeFieldText("a+b%20c%2Bd%2be%3d%3D%E9%80é%C3%A9%u65E5%uD83D%uDE00日"),
              "a b c d+e==é€éÃ©日😀日");
    for (const char* text : {"100%", "%4", "%zz%", "%u12", "%uD83D", "%uDE00x", "%uD83D%uD83D", ""}) {
        EXPECT_EQ(frmBrowser::DecodeFieldText(text), text) << "no escape, or half a character";
    }
    EXPECT_EQ(frmBrowser::DecodeFieldText("a%00b"), std::string("a\0b", 3));
}

TEST(CodePage, WhatItDoesNotHoldIsAQuestionMark)
{
    EXPECT_EQ(BytesOfText("a日b😀c"), "a?b?c");
    EXPECT_EQ(TextOfBytes("\x80\x81\xE9"), "€\u0081é");
    EXPECT_EQ(LowerCase("ABC ÀÉ xyz"), "abc àé xyz");
}

}  // namespace velmora::test
