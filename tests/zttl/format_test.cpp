#include "MessageCapture.h"
#include "zttl/zt_escape.h"
#include "zttl/zt_string.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

namespace {

template <class... A>
std::string F(const char* format, const A&... args)
{
    ZT_String s;
    s.Format(format, args...);
    return s.GetString();
}

class CentralEuropeanTime : public ::testing::Test {
protected:
    void SetUp() override
    {
        const char* old = getenv("TZ");
        saved = old ? old : "";
        hadZone = old != nullptr;
        setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        tzset();
    }
    void TearDown() override
    {
        if (hadZone)
            setenv("TZ", saved.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }
    std::string saved;
    bool hadZone = false;
};

} // namespace

TEST(Format, Integers)
{
    EXPECT_EQ(F("%5d", 42), "00042");
    EXPECT_EQ(F("%2d", 123), "23");
    EXPECT_EQ(F("%d", -7), "-7");
    EXPECT_EQ(F("%d", 0), "0");
    EXPECT_EQ(F("%d", -2147483647 - 1), "-2147483648");
    EXPECT_EQ(F("%u", -3), "-3");
    EXPECT_EQ(F("%D", 1000000), "1.000.000");
    EXPECT_EQ(F("%D", -1000), "-1.000");
    EXPECT_EQ(F("%D", 0), "0");
    EXPECT_EQ(F("%8D", 1234), "   1.234");
    EXPECT_EQ(F("%x|%X|%4x", 255, 255, 0x12345), "FF|FF|2345");
    EXPECT_EQ(F("%10x|%9X", 255, 0xABCDEF12u), "00000000FF|0ABCDEF12");
    EXPECT_EQ(F("%c%c", 'o', 'k'), "ok");
    EXPECT_EQ(F("100%%"), "100%");
}

TEST(Format, Strings)
{
    EXPECT_EQ(F("%-6s|", "abc"), "abc   |");
    EXPECT_EQ(F("%6s|", "abc"), "   abc|");
    EXPECT_EQ(F("%6s", "abcdefgh"), "abcd..");
    EXPECT_EQ(F("%3s", "abcdefgh"), "abc");
    EXPECT_EQ(F("%-15s ", "a value longer than fifteen"), "a value longe.. ");
    EXPECT_EQ(F("[%s]", static_cast<const char*>(nullptr)), "[]");
    ZT_String object("object");
    EXPECT_EQ(F("%V!", object), "object!");
    EXPECT_EQ(F("%Sq", "say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(F("%Sq", ""), "");
    EXPECT_EQ(F("%S!", "plain"), "plain");
    EXPECT_EQ(F("%Sh", "a<b"), "a&amp;lt;b");
    EXPECT_EQ(F("%Sc", "it's"), "it\\'s");
    EXPECT_EQ(F("%Sf", "C:\\My Files\\a.txt"), "C:/My%20Files/a.txt");
    EXPECT_EQ(F("%8Sq", "abcdefghij"), "\"abcdef..\"");
}

TEST(Format, Doubles)
{
    EXPECT_EQ(F("%f", 2.0), "2.");
    EXPECT_EQ(F("%.2f", 3.14159), "3.14");
    EXPECT_EQ(F("%.0f", -2.5), "-3.");
    EXPECT_EQ(F("%.2f", 0.05), "0.05");
    EXPECT_EQ(F("%+04.1f", 7.5), "+0007.5");
    EXPECT_EQ(F("%6.1f", 2.5), "     2.5");
    EXPECT_EQ(F("%f", 7), "7.") << "an integer argument is read as a double";
    ZT_String s;
    s.AppendDouble(12345.0, 3, 2);
    EXPECT_STREQ(s.GetString(), "######");
    EXPECT_EQ(s.GetLength(), 0) << "the length is not updated for an overflowing field";
    ZT_String t;
    t.AppendDouble(-1.25, 5, 1, 0, ' ');
    EXPECT_STREQ(t, "-    1.3");
}

TEST(Format, PadFlagCarriesOverToLaterConversions)
{
    EXPECT_EQ(F("% d|%3d", 1, 2), "1|002");
    // The blank flag of the first conversion makes the later sign go to the left edge.
    EXPECT_EQ(F("% d|%+6.1f", 1, 2.5), "1|+     2.5");
    EXPECT_EQ(F("%d|%+6.1f", 1, 2.5), "1|     +2.5");
    EXPECT_EQ(F("%05d|%-3.0f", 7, 2.0), "00007| 002.");
}

TEST(Format, MissingArgumentsReadAsZeroOrEmpty)
{
    EXPECT_EQ(F("UPDATE t SET a=\"%d%s%f%V%c\""), "UPDATE t SET a=\"00.\"");
    EXPECT_EQ(F("%s and %s", "one"), "one and ");
    EXPECT_EQ(F("%Sq%Tl%t%x%D"), "0" "0");
    EXPECT_EQ(F("50%% off"), "50% off");
    EXPECT_EQ(F("ends with %"), "ends with ");
    EXPECT_EQ(F("ends with %-12"), "ends with ");
}

TEST(Format, UnknownConversionIsDroppedWithoutConsumingAnArgument)
{
    MessageCapture messages;
    EXPECT_EQ(F("%y%d", 5), "5");
    EXPECT_TRUE(messages.Contains("zt_string(1906)"));
}

// Flags, width and precision as the engine reads them: one optional blank,
// then '-' or '+', then another blank, a width (a leading 0 pads with zeros)
// and ".precision". Each call starts with a fresh pad, so these cases do not
// carry a pad over from one another.
TEST(Format, FlagWidthPrecisionCombinations)
{
    struct Case {
        const char* format;
        double real;
        const char* expected;
    };
    const Case reals[] = {
        {"%4.1f|", 2.5, "   2.5|"},
        {"%-.2f", 2.5, " 2.50"},
        {"%.f", 2.5, "3."},
        {"%08.3f", -1.5, "-00000001.500"},
        {"%- 6.1f|", 2.5, "      2.5|"},
        {"% -6.1f|", 2.5, "      2.5|"},
        {"%+ 6.1f|", 2.5, "+     2.5|"},
    };
    for (const Case& c : reals)
        EXPECT_EQ(F(c.format, c.real), c.expected) << c.format;

    struct TextCase {
        const char* format;
        const char* text;
        const char* expected;
    };
    const TextCase texts[] = {
        {"%+5s|", "ab", "ab   |"}, // any sign flag aligns a text to the left
        {"% 5s|", "ab", "   ab|"},
        {"%05s|", "ab", "   ab|"}, // texts are padded with blanks only
        {"%3.2s|", "abcdef", "abc|"},
        {"%.2s|", "abcdef", "abcdef|"}, // a precision does not shorten a text
    };
    for (const TextCase& c : texts)
        EXPECT_EQ(F(c.format, c.text), c.expected) << c.format;

    struct IntegerCase {
        const char* format;
        const char* expected;
    };
    const IntegerCase integers[] = {
        {"%-5d|", "00042|"}, // integers always fill with zeros on the left
        {"%+d", "42"},
        {"% d", "42"},
        {"%.3d", "42"},
        {"%0d", "42"},
        {"%-x", "2A"},
        {"%+x", "2A"},
        {"%0x", "A"}, // a width of 0 is one digit: the high digits are cut off
        {"%5c|", "*|"},
    };
    for (const IntegerCase& c : integers)
        EXPECT_EQ(F(c.format, 42), c.expected) << c.format;
}

TEST(Format, OverlongWidthIsCapped)
{
    EXPECT_EQ(F("%1234567d", 5), std::string(63, '0') + "5");
    EXPECT_EQ(F("%99999999999d|%d", 5, 6), std::string(63, '0') + "5|6") << "the surplus digits are skipped";
}

TEST(Format, PercentSignsAndDanglingDirectives)
{
    EXPECT_EQ(F("%%%d%%", 3), "%3%");
    EXPECT_EQ(F("%3%|%-%|"), "%|%|") << "flags and width before %% are read and ignored";
    EXPECT_EQ(F("abc%."), "abc");
    EXPECT_EQ(F("abc%-08.3"), "abc");
}

// Star widths, '#', length letters and a second sign flag are not understood:
// the character is reported as an unknown conversion and dropped, takes no
// argument, and what follows it is plain text.
TEST(Format, UnsupportedDirectivesAreDroppedWithoutTakingAnArgument)
{
    const struct {
        const char* format;
        const char* expected;
    } cases[] = {
        {"%*d|%d", "d|5"},
        {"%.*f|%d", "f|5"},
        {"%#x|%d", "x|5"},
        {"%ld|%d", "d|5"},
        {"%lld|%d", "ld|5"},
        {"%-+5.1f|%d", "5.1f|5"},
        {"%+-5.1f|%d", "5.1f|5"},
    };
    for (const auto& c : cases) {
        MessageCapture messages;
        EXPECT_EQ(F(c.format, 5), c.expected) << c.format;
        EXPECT_TRUE(messages.Contains("zt_string(1906)")) << c.format;
    }
}

TEST(Format, Truncate)
{
    ZT_String s("abcdefgh");
    s.Truncate(4);
    EXPECT_STREQ(s, "abcd");
    ZT_String t("abcdefgh");
    t.Truncate(5);
    EXPECT_STREQ(t, "abc..");
    ZT_String u("abc");
    u.Truncate(0);
    u.Truncate(3);
    EXPECT_STREQ(u, "abc");
}

TEST(Format, Durations)
{
    auto duration = [](uint32_t s) {
        ZT_String text;
        text.AppendDuration(s);
        return std::string(text.GetString());
    };
    EXPECT_EQ(duration(59), "59s");
    EXPECT_EQ(duration(60), "1m 0s");
    EXPECT_EQ(duration(3599), "59m59s");
    EXPECT_EQ(duration(3600), "1h 0m");
    EXPECT_EQ(duration(7180), "1h 0m") << "1 h 59 m 40 s: the rounded minutes wrap";
    EXPECT_EQ(duration(86399), "23h 0m");
    EXPECT_EQ(duration(86400), "1d 0h");
    EXPECT_EQ(duration(8553600), "99d 0h");
    EXPECT_EQ(duration(8553601), "14w 1d");
    EXPECT_EQ(duration(59875201), "99w");
    EXPECT_EQ(duration(215308801), "1y 1d");
    EXPECT_EQ(F("%Ts", 90), "1m30s");
}

TEST(Format, Clock)
{
    auto clock = [](uint32_t s) {
        ZT_String text;
        text.AppendClock(s);
        return std::string(text.GetString());
    };
    EXPECT_EQ(clock(59), "   00:59");
    EXPECT_EQ(clock(3600), "   00:00");
    EXPECT_EQ(clock(3601), "01:00:01");
    EXPECT_EQ(clock(90000), "25:00:00");
    EXPECT_EQ(F("%Tx", 61), "   01:01");
}

TEST_F(CentralEuropeanTime, StampsAreShownInLocalTime)
{
    // 2004-11-03 14:05:00 CET is Unix time 1099487100.
    const ZT_Stamp stamp = ZT_Stamp(1099487100L - ZT_StampEpoch);
    EXPECT_EQ(F("%Tl", stamp), "03.11.2004 14:05:00");
    EXPECT_EQ(F("%Tm", 1099487100), "03.11.2004 14:05:00");
    EXPECT_EQ(F("%t", stamp), "03.11.2004 14:05");
    ZT_String forced;
    forced.AppendTime(stamp, true, true);
    EXPECT_STREQ(forced, "03.11.2004 14:05");
    EXPECT_EQ(F("%Tl|%t", 0, -5), "|");

    ZT_Stamp now = StampNow();
    EXPECT_EQ(F("%t", now).size(), 5u) << "a stamp of today shows the clock only";
    EXPECT_TRUE(SameDay(now, now));
    EXPECT_FALSE(SameDay(stamp, now));
    EXPECT_TRUE(SameYear(stamp, stamp + 3600));
}
