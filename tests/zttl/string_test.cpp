#include "MessageCapture.h"
#include "zttl/zt_string.h"

#include <gtest/gtest.h>

#include <string>

TEST(String, EmptyStringsHoldNoBuffer)
{
    ZT_String s;
    s.Set("");
    EXPECT_EQ(s.GetData(), nullptr);
    EXPECT_STREQ(s.GetString(), "");
    EXPECT_TRUE(s.IsEmpty());
    s = "abc";
    EXPECT_EQ(s.GetCapacity(), 5) << "assignment normalises: 16 bytes, then compacted";
    s.Empty();
    EXPECT_EQ(s.GetData(), nullptr);
}

TEST(String, EditsCompactTheBuffer)
{
    ZT_String s(std::string(100, 'x').c_str());
    s.Mid(0, 10);
    EXPECT_EQ(s.GetLength(), 10);
    EXPECT_EQ(s.GetCapacity(), 12);
}

TEST(String, AppendsNeverShrink)
{
    ZT_String s("a");
    for (int i = 0; i < 40; ++i)
        s.Append("bc");
    EXPECT_EQ(s.GetLength(), 81);
    s.AppendChar('!').AppendText("").AppendText(nullptr).Append(nullptr);
    EXPECT_EQ(s.GetLength(), 82);
    s.Append(s.GetString() + 80); // appending a piece of itself
    EXPECT_STREQ(s.GetString() + 80, "c!c!");
    ZT_String t("lo");
    t.Prepend("hel");
    EXPECT_STREQ(t, "hello");
    EXPECT_STREQ(t + " world", "hello world");
}

TEST(String, CharacterAccessIsChecked)
{
    MessageCapture messages;
    ZT_String s("abc");
    EXPECT_EQ(s.GetAt(3), 0) << "the length addresses the terminating NUL";
    EXPECT_EQ(s.GetAt(9), 0);
    EXPECT_TRUE(messages.Contains("ILLEGAL INDEX"));
    s.SetAt(5, 'z');
    EXPECT_EQ(s.GetSize(), 6);
}

TEST(String, AppendHexDigits)
{
    ZT_String s;
    s.AppendHex(255, -1).AppendChar(' ').AppendHex(0x1234, 2).AppendChar(' ').AppendHex(0, 0);
    EXPECT_STREQ(s, "FF 34 0");
}

TEST(String, AppendHexZeroFillsFieldsWiderThanTheValue)
{
    ZT_String s;
    s.AppendHex(255, 10);
    EXPECT_STREQ(s, "00000000FF");
    s.Empty();
    s.AppendHex(0xFFFFFFFFu, 9).AppendChar('|').AppendHex(0xABCDEF12u, 12);
    EXPECT_STREQ(s, "0FFFFFFFF|0000ABCDEF12");
    EXPECT_EQ(s.GetLength(), 22);
    s.Empty();
    s.AppendHex(1, 40);
    EXPECT_EQ(std::string(s.GetString()), std::string(39, '0') + "1");
}

TEST(String, SearchingAndCutting)
{
    ZT_String s("hello world");
    EXPECT_EQ(s.FindChar('o'), 4);
    EXPECT_EQ(s.FindChar('o', 5), 7);
    EXPECT_EQ(s.FindChar('o', -3), 4);
    EXPECT_EQ(s.FindChar('o', 99), -1);
    EXPECT_EQ(ZT_String().FindChar('a'), -1);
    EXPECT_EQ(s.Find("wor"), 6);
    EXPECT_STREQ(s.Left(5), "hello");
    EXPECT_STREQ(s.Left(-1), "");
    EXPECT_STREQ(s.Left(50), "hello world");
    EXPECT_STREQ(s.From(6), "world");
    EXPECT_STREQ(s.From(12), "");
    EXPECT_STREQ(ZT_String("2005-03-14").PickByMask("YYYY-MM-DD", 'Y'), "2005");
    ZT_String m("abcdef");
    EXPECT_STREQ(m.Mid(2, 3), "cde");
    EXPECT_STREQ(m, "cde");
    EXPECT_STREQ(m.Mid(9), "");
}

TEST(String, TrimUsesTheControlBytesAsWhiteSpace)
{
    ZT_String s("\x01 abc\t");
    s.Trim();
    EXPECT_STREQ(s, "abc");
    ZT_String latin("\xA0" "abc");
    latin.Trim();
    EXPECT_STREQ(latin, "\xA0" "abc");
    EXPECT_STREQ(Trimmed(" x "), "x");
}

TEST(String, UnquoteKeepsTheStaleLengthWithoutClosingQuote)
{
    ZT_String quoted("  \"abc\"  ");
    quoted.Unquote();
    EXPECT_STREQ(quoted, "abc");
    EXPECT_EQ(quoted.GetLength(), 3);
    ZT_String open("\"abc");
    open.Unquote();
    EXPECT_STREQ(open, "abc");
    EXPECT_EQ(open.GetLength(), 4);
    EXPECT_STREQ(TrimmedUnquoted("  \"a b\" "), "a b");
    ZT_String plain("  abc");
    plain.Unquote();
    EXPECT_STREQ(plain, "  abc");
}

TEST(String, CollapseSpacesKeepsEachRunsLastCharacter)
{
    ZT_String s("  a  b \t\nc d  ");
    s.CollapseSpaces();
    EXPECT_STREQ(s, "a b\nc d");
}

TEST(String, ReplaceAll)
{
    ZT_String s("a.b.c");
    EXPECT_EQ(s.ReplaceChar('.', '-'), 2);
    s.Replace("-", "--");
    EXPECT_STREQ(s, "a--b--c");
    s.Replace("--", "");
    EXPECT_STREQ(s, "abc");
    s.Replace("x", "y");
    s.Replace(nullptr, "y");
    s.Replace("", "y");
    EXPECT_STREQ(s, "abc");
    ZT_String overlap("aaa");
    overlap.Replace("aa", "b");
    EXPECT_STREQ(overlap, "ba");
}

TEST(String, SplitOffConsumesOnlyTheSeparatorsFirstCharacter)
{
    ZT_String s("a, b");
    EXPECT_STREQ(s.SplitOff(", "), "a");
    EXPECT_STREQ(s, " b");
    EXPECT_STREQ(s.SplitOff(","), " b");
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_TRUE(s.SplitOff(",").IsEmpty());
}

TEST(String, SplitStopsAtTheFirstEmptyPiece)
{
    ZT_StringList pieces = Split(",", "a,,b");
    ASSERT_EQ(pieces.GetSize(), 1);
    EXPECT_STREQ(pieces[0], "a");
    EXPECT_EQ(Split(",", ",a").GetSize(), 0);
    ZT_StringList three = Split(",", "x,y,z");
    ASSERT_EQ(three.GetSize(), 3);
    EXPECT_STREQ(three[2], "z");
}

TEST(String, ToNameCleansNames)
{
    EXPECT_STREQ(ToName("Gr\xF6\xDF" "e (kg)"), "Gr_e_kg");
    EXPECT_STREQ(ToName("  12 first name"), "first_name");
    EXPECT_STREQ(ToName("caf\xE9:au*lait"), "cafe_au_lait");
    EXPECT_STREQ(ToName("a.b-c_d"), "a.b-c_d");
    EXPECT_STREQ(ToName(nullptr), "");
}

TEST(String, StripTags)
{
    ZT_String s("a<b>c<d>e");
    s.StripTags("<", ">");
    EXPECT_STREQ(s, "a c e");
    ZT_String open("ab<cd");
    open.StripTags("<", ">");
    EXPECT_STREQ(open, "a") << "the character before an unclosed mark goes too";
    ZT_String nested("x<<y>z>w");
    nested.StripTags("<", ">");
    EXPECT_EQ(nested.Find("<"), -1);
}

TEST(String, NegativeLengthReadsAsError)
{
    struct Broken : ZT_String {
        Broken() : ZT_String("x") { SetLengthField(-1); }
    } broken;
    EXPECT_STREQ(broken.GetString(), "ZT_String ERROR");
}
