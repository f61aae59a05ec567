#include "Sqlite2Checker.h"
#include "TestFiles.h"
#include "format.h"

#include <gtest/gtest.h>

namespace {

std::string Fixture(const std::string& name)
{
    return ReadWholeFile(FixturePath(name + ".db"));
}

std::string Joined(const std::vector<std::string>& problems)
{
    std::string text;
    for (const auto& p : problems)
        text += p + "\n";
    return text;
}

bool Mentions(const std::vector<std::string>& problems, const std::string& text)
{
    return Joined(problems).find(text) != std::string::npos;
}

class FixtureFiles : public ::testing::TestWithParam<std::string> {};

} // namespace

TEST_P(FixtureFiles, PassTheChecker)
{
    EXPECT_EQ(Joined(CheckSqlite2Bytes(Fixture(GetParam()))), "");
}

INSTANTIATE_TEST_SUITE_P(All, FixtureFiles,
                         ::testing::Values("big", "decltypes", "dropped", "empty", "freepages", "keys", "overflow",
                                           "person", "swapped", "swapped_tree", "texts", "types"));

TEST(Checker, FindsDamage)
{
    const std::string person = Fixture("person");
    ASSERT_TRUE(CheckSqlite2Bytes(person).empty());

    std::string truncated = person.substr(0, person.size() - 1024);
    EXPECT_FALSE(CheckSqlite2Bytes(truncated).empty());

    std::string badCell = person;
    badCell[2 * 1024 + 4] = 0x06; // the first cell of page 3 no longer starts on a multiple of 4
    EXPECT_TRUE(Mentions(CheckSqlite2Bytes(badCell), "bad cell offset"));

    std::string loop = person;
    sqlite2::ByteOrder{}.Put32(reinterpret_cast<uint8_t*>(loop.data()) + 5 * 1024, 6); // page 6 is its own child
    EXPECT_FALSE(CheckSqlite2Bytes(loop).empty());
}

TEST(Checker, FindsAMissingIndexEntryAndABrokenOverflowChain)
{
    std::string keys = Fixture("keys");
    // Drop the first cell of the first index leaf we meet by unlinking it from its page's list.
    std::string damaged = keys;
    auto* bytes = reinterpret_cast<uint8_t*>(damaged.data());
    sqlite2::ByteOrder order;
    const uint8_t* page3 = bytes + 2 * 1024; // "(keys autoindex 1)" lives on page 3
    uint16_t first = order.Get16(page3 + 4);
    uint16_t second = order.Get16(page3 + first + 6);
    order.Put16(bytes + 2 * 1024 + 4, second);
    EXPECT_FALSE(CheckSqlite2Bytes(damaged).empty());

    std::string overflow = Fixture("overflow");
    std::vector<std::string> found;
    // Cut one overflow link somewhere: scan for a page whose first word is a plausible link and zero it.
    for (size_t page = 3; page * 1024 <= overflow.size() && found.empty(); ++page) {
        std::string copy = overflow;
        auto* p = reinterpret_cast<uint8_t*>(copy.data()) + (page - 1) * 1024;
        if (order.Get32(p) == 0 || order.Get32(p) > copy.size() / 1024)
            continue;
        order.Put32(p, 0);
        found = CheckSqlite2Bytes(copy);
    }
    EXPECT_FALSE(found.empty());
}
