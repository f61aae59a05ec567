#include "AllocationProbe.h"
#include "MessageCapture.h"
#include "zttl/zt_arrayimp.h"
#include "zttl/zt_arrayobval.h"
#include "zttl/zt_arrayval.h"
#include "zttl/zt_stringmap.h"

#include <gtest/gtest.h>

#include <string>

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

TEST(StringList, ClearingThroughTheBaseFreesTheTexts)
{
    AllocationProbe probe;
    bool emptied;
    {
        ZT_StringList list;
        for (const char* text : {"one", "two", "three"})
            list.Add(text);
        ZT_ArrayObVal<ZT_TextElement>& asArray = list;
        asArray.RemoveAll();
        emptied = list.IsEmpty();
    }
    EXPECT_TRUE(emptied);
    EXPECT_EQ(probe.Outstanding(), 0) << "every text copy is freed";
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

// SetAt needs a copy of the key and room for the entry; whichever of the
// two allocations fails, the map must stay as it was.
TEST(StringMap, FailedAllocationsAddNothingAndAreReported)
{
    int values[6] = {};
    for (int allowed = 0; allowed < 2; ++allowed) {
        SCOPED_TRACE(allowed);
        MessageCapture messages;
        ZT_StringMap<int> map;
        AllocationProbe probe;

        probe.FailAfter(allowed);
        bool addedToEmpty = map.SetAt("first", &values[0]);
        probe.Restore();
        EXPECT_FALSE(addedToEmpty);
        EXPECT_EQ(map.GetSize(), 0);
        EXPECT_TRUE(messages.Contains("ZT_StringMap::SetAt() out of memory, \"first\" not added  \t[E]"));
        EXPECT_EQ(probe.Outstanding(), 0) << "nothing half-made is kept";

        for (int i = 0; i < 4; ++i) // fills the first block of four entries
            ASSERT_TRUE(map.SetAt(std::string(1, char('a' + i)).c_str(), &values[i]));
        messages.Lines().clear();
        probe.FailAfter(allowed);
        bool addedBeyondBlock = map.SetAt("e", &values[4]);
        bool replaced = map.SetAt("B", &values[5]); // needs no memory
        probe.Restore();
        EXPECT_FALSE(addedBeyondBlock);
        EXPECT_TRUE(replaced);
        EXPECT_TRUE(messages.Contains("\"e\" not added"));
        ASSERT_EQ(map.GetSize(), 4);
        EXPECT_STREQ(map.KeyAt(3), "d") << "the old block is still in use";
        EXPECT_EQ(map.Lookup("b"), &values[5]);
        EXPECT_FALSE(map.Contains("e"));
        EXPECT_TRUE(map.SetAt("e", &values[4])) << "the map grows once memory is back";
        EXPECT_EQ(map.Lookup("E"), &values[4]);
    }
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
