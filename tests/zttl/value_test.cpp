#include "zttl/zt_escape.h"
#include "zttl/zt_parse.h"
#include "zttl/zt_value.h"

#include <gtest/gtest.h>

namespace {

std::string Saved(const ZT_Value& value, bool hexInts = false)
{
    ZT_String out;
    value.ToText(out, hexInts);
    return out.GetString();
}

} // namespace

TEST(Value, ParsesTheMostSpecificKind)
{
    ZT_Value colour;
    ASSERT_TRUE(colour.SetFromText("  #FF8000"));
    EXPECT_EQ(colour.GetKind(), ZT_Value::kindColour);
    EXPECT_STREQ(colour.GetText(), "#16744448");
    EXPECT_EQ(Saved(colour), "#FF8000");

    ZT_Value range;
    range.SetFromText("3..7");
    EXPECT_TRUE(range.IsRange());
    EXPECT_EQ(range.GetLow(), 3);
    EXPECT_EQ(range.GetHigh(), 7);
    EXPECT_STREQ(range.GetText(), "(null)");
    EXPECT_STREQ(range.GetString(), "3..7");
    EXPECT_EQ(Saved(range), "3..7");

    ZT_Value quoted, bare;
    quoted.SetFromText("\"abc\"");
    bare.SetFromText("abc");
    EXPECT_STREQ(quoted.GetText(), "abc");
    EXPECT_STREQ(bare.GetText(), "abc");
    EXPECT_EQ(Saved(bare), "\"abc\"");

    ZT_Value real, integer, text, boolean;
    real.SetFromText("1.2.3");
    EXPECT_DOUBLE_EQ(real.GetDouble(), 1.2);
    EXPECT_STREQ(real.GetText(), "1.200");
    integer.SetFromText("-3");
    EXPECT_EQ(integer.GetInt(), -3);
    EXPECT_STREQ(integer.GetText(), "-3");
    text.SetFromText("x1");
    EXPECT_TRUE(text.IsText());
    boolean.SetFromText("false");
    EXPECT_EQ(boolean.GetKind(), ZT_Value::kindBool);
    EXPECT_STREQ(boolean.GetText(), "false");

    ZT_Value untouched;
    untouched.SetInt(5);
    EXPECT_FALSE(untouched.SetFromText(nullptr));
    EXPECT_EQ(untouched.GetInt(), 5);
}

TEST(Value, UpperCaseTrueIsATextUntilGetIntRecognisesIt)
{
    ZT_Value value;
    value.SetFromText("TRUE");
    EXPECT_TRUE(value.IsText());
    EXPECT_EQ(value.GetInt(), 1);
    EXPECT_TRUE(value.GetKindBits() & ZT_Value::kindBool);
}

TEST(Value, GetIntRoundsHalfAwayFromZero)
{
    ZT_Value value;
    value.SetDouble(-0.5);
    EXPECT_EQ(value.GetInt(), -1);
    value.SetDouble(0.49);
    EXPECT_EQ(value.GetInt(), 0);
    value.SetDouble(-2.5);
    EXPECT_EQ(value.GetInt(), -3);
    ZT_Value hash;
    hash.SetQuotedText("#10");
    hash.SetFromText("\"#10\"");
    EXPECT_EQ(hash.GetInt(), 16);
    EXPECT_EQ(hash.GetKindBits(), ZT_Value::kindColour);
    ZT_Value empty;
    EXPECT_STREQ(empty.GetText(), "(null)");
    EXPECT_EQ(empty.GetInt(), 0);
}

TEST(Value, SavedForms)
{
    ZT_Value value;
    value.SetInt(255);
    EXPECT_EQ(Saved(value), "255");
    EXPECT_EQ(Saved(value, true), "0xFF");
    value.SetDouble(2.5);
    EXPECT_EQ(Saved(value), "2.500");
    ZT_Value copy(value);
    EXPECT_DOUBLE_EQ(copy.GetDouble(), 2.5);
    copy.Clear();
    EXPECT_EQ(copy.GetKindBits(), 0);
}

TEST(Value, SetQuotedText)
{
    ZT_Value value;
    value.SetQuotedText("\"a\"b\"");
    EXPECT_STREQ(value.GetString(), "a\"b");
    value.SetQuotedText("\"\"");
    EXPECT_STREQ(value.GetString(), "a\"b") << "two characters or fewer leave the text";
    value.SetQuotedText("\"open");
    EXPECT_STREQ(value.GetString(), "open");
    value.SetQuotedText(nullptr);
    EXPECT_TRUE(value.IsEmpty());
}

TEST(Parse, Integers)
{
    EXPECT_EQ(ParseInt("0x10"), 16);
    EXPECT_EQ(ParseInt("#10"), 16);
    EXPECT_EQ(ParseInt("9x10"), 16);
    EXPECT_EQ(ParseInt("12x4"), 12);
    EXPECT_EQ(ParseInt("+42"), 42);
    EXPECT_EQ(ParseInt("  -17abc"), -17);
    EXPECT_EQ(ParseInt("-000000001234567"), -123) << "at most 12 characters, sign included";
    EXPECT_EQ(ParseInt(nullptr), 0);
    EXPECT_EQ(ParseHex("1fZ"), 0x1Fu);
    EXPECT_EQ(ParseHex("123456789"), 0x12345678u);
}

TEST(Parse, Doubles)
{
    EXPECT_DOUBLE_EQ(ParseDouble(" -3.25"), -3.25);
    EXPECT_DOUBLE_EQ(ParseDouble("+3.25"), 0.0);
    EXPECT_DOUBLE_EQ(ParseDouble("1e5"), 1.0);
}

TEST(Parse, ComparisonsAndNumericTest)
{
    EXPECT_EQ(CompareNoCase(ZT_String("Abc"), "aBC"), 0);
    EXPECT_EQ(CompareNoCase(ZT_String(), ""), 0);
    EXPECT_EQ(CompareNoCase(ZT_String(), nullptr), 0);
    EXPECT_NE(CompareNoCase(ZT_String("x"), ""), 0);
    EXPECT_NE(CompareNoCase(ZT_String(), "x"), 0);
    EXPECT_TRUE(IsNumeric(ZT_String(" 12 ")));
    EXPECT_FALSE(IsNumeric(ZT_String("-12")));
    EXPECT_FALSE(IsNumeric(ZT_String()));
}

TEST(Escape, AllFour)
{
    EXPECT_STREQ(HtmlEscape("<a&b>"), "&lt;a&amp;b&gt;");
    ZT_String html("\xE9 & 'q' \xF1");
    HtmlEntities(html, false);
    EXPECT_STREQ(html, "&eacute; &amp;amp; &#x27;q&#x27; \xF1");
    ZT_String backslashed("say \"x\"");
    HtmlEntities(backslashed, true);
    EXPECT_STREQ(backslashed, "say \\\"x\\\"");
    EXPECT_STREQ(CEscape("a\\b'c\"d\ne\tf"), "a\\\\b\\'c\\\"d\\ne\\tf");
    EXPECT_STREQ(UrlEncode("a b&c%", 0), "a%20b%26c%25");
    EXPECT_STREQ(UrlEncode("a b\\'", urlBlankAsPlus | urlKeepBackslash | urlBackslashQuotes), "a+b%5C\\'");
    EXPECT_STREQ(UrlEncode("\xFF", 0), "%FF");
    EXPECT_STREQ(CsvQuote("a\"b"), "\"a\"\"b\"");
    EXPECT_STREQ(CsvQuote(""), "");
}
