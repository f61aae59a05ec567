#include "Rowkeeper.h"
#include "TempDir.h"

#include <gtest/gtest.h>

namespace {

std::string Cell(const std::string& text)
{
    return text + std::string(16 - text.size(), ' ');
}

const std::string separator2 = std::string(15, '-') + "+" + std::string(15, '-') + "\n";

class AsciiTable : public ::testing::Test {
protected:
    void SetUp() override
    {
        file = dir.File("t.db");
        MakeDatabase(file, "CREATE TABLE n(i INTEGER PRIMARY KEY, v TEXT);"
                           "WITH RECURSIVE c(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM c WHERE x < 100) "
                           "INSERT INTO n SELECT x, 'v' || x FROM c;");
    }
    std::string Table(const std::string& sql)
    {
        RunResult r = Rowkeeper({"--query", file, sql});
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.err, bannerLines);
        return r.out;
    }
    std::string Rows(int from, int to)
    {
        std::string text;
        for (int i = from; i <= to; ++i)
            text += Cell(std::to_string(i)) + Cell("v" + std::to_string(i)) + "\n";
        return text;
    }
    TempDir dir;
    std::string file;
};

} // namespace

TEST_F(AsciiTable, TwoColumnsOneRow)
{
    EXPECT_EQ(Table("SELECT 1 AS a, 'x' AS b"),
              "a              |b              \n" + separator2 + Cell("1") + Cell("x") + "\n\n");
}

TEST_F(AsciiTable, NullsPrintAsBlanks)
{
    EXPECT_EQ(Table("SELECT NULL AS a, '' AS b"), "a              |b              \n" + separator2 + std::string(32, ' ') + "\n\n");
}

TEST_F(AsciiTable, EmptyResultHasNoColumns)
{
    EXPECT_EQ(Table("SELECT * FROM n WHERE 0"), "\n\n\n");
}

TEST_F(AsciiTable, NineteenRowsPrintWhole)
{
    const std::string header = "i              |v              \n" + separator2;
    EXPECT_EQ(Table("SELECT * FROM n WHERE i <= 19"), header + Rows(1, 19) + "\n");
}

TEST_F(AsciiTable, LongTablesRepeatTheSecondToLastRow)
{
    const std::string header = "i              |v              \n" + separator2;
    const std::string ellipsis = std::string(13, ' ');
    EXPECT_EQ(Table("SELECT * FROM n WHERE i <= 20"),
              header + Rows(1, 19) + ellipsis + ".. (19 total) ..\n" + Rows(19, 19) + "\n");
    EXPECT_EQ(Table("SELECT * FROM n"), header + Rows(1, 19) + ellipsis + ".. (99 total) ..\n" + Rows(99, 99) + "\n");
}

TEST_F(AsciiTable, AtMostSixColumnsAndLongNamesUncut)
{
    std::string out = Table("SELECT 1 AS c1, 2 AS c2, 3 AS c3, 4 AS c4, 5 AS c5, "
                            "'abcdefghijklmnopqrstuvwxyz' AS a_column_name_of_20_, 7 AS c7");
    std::string header = "c1             |c2             |c3             |c4             |c5             |"
                         "a_column_name_of_20_\n";
    std::string separator;
    for (int i = 0; i < 6; ++i)
        separator += (i ? "+" : "") + std::string(15, '-');
    EXPECT_EQ(out, header + separator + "\n" + Cell("1") + Cell("2") + Cell("3") + Cell("4") + Cell("5") +
                       Cell("abcdefghijklm..") + "\n\n");
}

TEST_F(AsciiTable, FifteenCharactersFitSixteenAreCut)
{
    EXPECT_EQ(Table("SELECT '123456789012345' AS a, '1234567890123456' AS b"),
              "a              |b              \n" + separator2 + Cell("123456789012345") + Cell("1234567890123..") +
                  "\n\n");
}

TEST_F(AsciiTable, PercentInValuesIsReadOnceMore)
{
    // The SQL text itself is a format too: "%%%%" reaches SQLite as "%%", which the table shows
    // as "%"; the cell was padded while it still held both characters.
    std::string out = Table("SELECT '50%%%%' AS a, 'x' AS b");
    EXPECT_EQ(out, "a              |b              \n" + separator2 + "50%" + std::string(12, ' ') + Cell("x") + "\n\n");
}
