#include "number_spelling.h"

#include <gtest/gtest.h>

using sqlite2::KeepNumberSpelling;

TEST(NumberSpelling, NumbersStandingAloneKeepTheirText)
{
    EXPECT_EQ(KeepNumberSpelling("INSERT INTO n VALUES(007, 1.50, 1e3, -0, +5, .5)"),
              "INSERT INTO n VALUES('007', '1.50', '1e3', '-0', '5', '.5')");
    EXPECT_EQ(KeepNumberSpelling("insert into n(a, b) values (1.0, 'x'), (2.50, NULL);"),
              "insert into n(a, b) values ('1.0', 'x'), ('2.50', NULL);");
    EXPECT_EQ(KeepNumberSpelling("UPDATE n SET a = 1.50, b = b + 1, c = -2e5 WHERE a = 1.0"),
              "UPDATE n SET a = '1.50', b = b + 1, c = '-2e5' WHERE a = 1.0")
        << "the WHERE part is a comparison, not a stored value";
}

TEST(NumberSpelling, EverythingElseIsLeftAlone)
{
    for (const char* sql : {"INSERT INTO n VALUES(7/2, 0.1*3, abs(-1), (5), 0x1F, 'x', x'00')",
                            "INSERT INTO n SELECT 1.50", "INSERT INTO n DEFAULT VALUES",
                            "SELECT 1.50", "DELETE FROM n WHERE a = 007", "CREATE TABLE t(a DEFAULT 1.50)",
                            "INSERT INTO \"VALUES\"(a) SELECT 1", "UPDATE n SET (a, b) = (1, 2)",
                            ""})
        EXPECT_EQ(KeepNumberSpelling(sql), sql);
    EXPECT_EQ(KeepNumberSpelling("INSERT INTO n VALUES('1.50 -- text', 1.5 -- note\n)"),
              "INSERT INTO n VALUES('1.50 -- text', '1.5' -- note\n)")
        << "strings and comments are no numbers";
}
