#include "MessageCapture.h"
#include "zttl/zt_arrayimp.h"
#include "zttl/zt_arrayobval.h"
#include "zttl/zt_arrayval.h"
#include "zttl/zt_stringmap.h"

#include <gtest/gtest.h>

TEST(ArrayVal, GrowsInSixteenStepsFromTheCount)
{
    ZT_ArrayVal<char> array;
    ASSERT_TRUE(array.SetSize(1));
    EXPECT_EQ(array.GetCapacity(), 16);
    ASSERT_TRUE(array.SetSize(17));
    EXPECT_EQ(array.GetCapacity(), 33);
    ASSERT_TRUE(array.SetSize(5));
    EXPECT_EQ(array.GetCapacity(), 33) << "shrinking the count never gives memory back";
    ASSERT_TRUE(array.SetSize(0));
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(ArrayVal, FreeExtraCompactsOnlyWhenMoreThanHalfIsUnused)
{
    ZT_ArrayVal<int> array;
    array.SetSize(1);
    array.SetSize(17);
    array.SetSize(10);
    array.FreeExtra();
    EXPECT_EQ(array.GetCapacity(), 11);

    ZT_ArrayVal<int> kept;
    kept.SetSize(1);
    kept.SetSize(17);
    kept.SetSize(20);
    kept.FreeExtra();
    EXPECT_EQ(kept.GetCapacity(), 33);
}

TEST(ArrayVal, BadIndicesAreReportedAndClamped)
{
    MessageCapture messages;
    ZT_ArrayVal<int> array;
    EXPECT_EQ(array.GetAt(0), 0);
    EXPECT_TRUE(messages.Contains("ZT_ArrayVal<T>::[0] EMPTY  \t[E]"));
    for (int i = 0; i < 3; ++i)
        array.SetAtGrow(i, 10 + i);
    EXPECT_EQ(array.GetAt(-1), 10);
    EXPECT_TRUE(messages.Contains("ZT_ArrayVal<T>::[-1] ILLEGAL INDEX"));
    const ZT_ArrayVal<int>& readOnly = array;
    EXPECT_EQ(readOnly.GetAt(3), 12);
    EXPECT_TRUE(messages.Contains("zt_arrayval(190)"));
    array.GetAt(7) = 99; // the reference form clamps as well
    EXPECT_EQ(array.GetAt(2), 99);
}

TEST(ArrayObVal, GrowsInFourStepsAndCopiesTexts)
{
    ZT_StringList list;
    list.Add("a");
    EXPECT_EQ(list.GetCapacity(), 4);
    for (const char* text : {"b", "", "d"})
        list.Add(text);
    list.Add("e");
    EXPECT_EQ(list.GetCapacity(), 8);
    EXPECT_EQ(list[2], nullptr) << "an empty text is stored as no text";

    ZT_StringList copy(list);
    ASSERT_EQ(copy.GetSize(), 5);
    EXPECT_STREQ(copy[4], "e");
    EXPECT_NE(copy[4], list[4]);
}

TEST(StringList, FindIndexTreatsNullAndEmptyAsDocumented)
{
    ZT_StringList list;
    list.Add("x");
    list.Add("");
    list.Add("y");
    EXPECT_EQ(list.FindIndex("y"), 2);
    EXPECT_EQ(list.FindIndex(nullptr), 1);
    EXPECT_EQ(list.FindIndex(""), -1) << "a null element never matches a non-null text";
    EXPECT_EQ(ZT_StringList().FindIndex("x"), -1);
}

struct Counted {
    static int alive;
    Counted() { ++alive; }
    ~Counted() { --alive; }
};
int Counted::alive = 0;

TEST(ArrayPtr, GrowsBySevenAndDeletesOnRemove)
{
    ZT_ArrayPtr<Counted> array;
    Counted* last = new Counted;
    array.SetAtGrow(10, last);
    EXPECT_EQ(array.GetCapacity(), 14);
    EXPECT_EQ(array.GetSize(), 11);
    EXPECT_EQ(array.GetAt(3), nullptr);
    EXPECT_EQ(array.FindIndex(last), 10);
    array.Add(new Counted);
    EXPECT_EQ(Counted::alive, 2);
    array.Remove(last);
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_EQ(array.GetSize(), 11);
    array.RemoveAt(99); // ignored
    array.RemoveAll();
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_EQ(array.GetSize(), 0);
}

TEST(ArrayPtr, BadIndexGivesNull)
{
    MessageCapture messages;
    ZT_ArrayPtr<Counted> array;
    EXPECT_EQ(array.GetAt(0), nullptr);
    EXPECT_TRUE(messages.Contains("pData = NULL"));
    array.Add(nullptr);
    EXPECT_EQ(array.GetAt(5), nullptr);
    EXPECT_TRUE(messages.Contains("illegal Index Access 5"));
}

TEST(StringMap, KeepsCaseInsensitiveOrder)
{
    int beta = 1, alpha = 2, gamma = 3, other = 4;
    ZT_StringMap<int> map;
    EXPECT_TRUE(map.SetAt("beta", &beta));
    EXPECT_TRUE(map.SetAt("Alpha", &alpha));
    EXPECT_TRUE(map.SetAt("gamma", &gamma));
    EXPECT_STREQ(map.KeyAt(0), "Alpha");
    EXPECT_STREQ(map.KeyAt(1), "beta");
    EXPECT_STREQ(map.KeyAt(2), "gamma");
    EXPECT_EQ(map.Lookup("ALPHA"), &alpha);
    EXPECT_FALSE(map.SetAt("BETA", &other, false));
    EXPECT_EQ(map.Lookup("beta"), &beta);
    EXPECT_TRUE(map.SetAt("BETA", &other));
    EXPECT_EQ(map.Lookup("beta"), &other);
    EXPECT_STREQ(map.KeyAt(1), "beta") << "the key keeps its first spelling";
    EXPECT_EQ(map.Lookup(""), nullptr);
    EXPECT_EQ(map.Lookup(nullptr), nullptr);
    EXPECT_FALSE(map.SetAt(nullptr, &other));
    EXPECT_EQ(map.KeyAt(3), nullptr);
}

TEST(StringMap, ManyKeysStaySortedAndFindable)
{
    ZT_StringMap<int> map;
    static int values[200];
    for (int i = 0; i < 200; ++i) {
        char key[16];
        snprintf(key, sizeof key, "k%03d", (i * 37) % 200);
        map.SetAt(key, &values[i]);
    }
    ASSERT_EQ(map.GetSize(), 200);
    for (int i = 1; i < 200; ++i)
        EXPECT_LT(strcmp(map.KeyAt(i - 1), map.KeyAt(i)), 0);
    EXPECT_TRUE(map.Contains("K123"));
    map.Remove(map.Lookup("k123"));
    EXPECT_FALSE(map.Contains("k123"));
    EXPECT_EQ(map.GetSize(), 199);
}

TEST(StringMap, OwningMapDeletesValues)
{
    {
        ZT_StringMap<Counted, true> map;
        map.SetAt("a", new Counted);
        map.SetAt("b", new Counted);
        map.SetAt("a", new Counted, true, true);
        EXPECT_EQ(Counted::alive, 2);
    }
    EXPECT_EQ(Counted::alive, 0);
}
