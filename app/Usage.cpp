#include "Usage.h"

namespace {

const char* const productName = "Rowkeeper";
const int majorVersion = 0;
const int minorVersion = 10;
const int buildNumber = 10;

const char usageText[] =
    "USAGE:\n"
    "\n"
    "--create2 <file> <sql>\t\tcreate a SQLite 2.x database\n"
    "--create  <file> <sql>\t\tcreate a SQLite 3.x database\n"
    "\n"
    "--exec    <file> <sql>\t\texecute some sql.\n"
    "--query   <file> <sql>\t\tdisplay query as ascii table\n"
    "\n"
    "--query-one  <file> <sql>\treturn single value\n"
    "--query-csv  <file> <sql>\treturn query result as CSV\n"
    "--query-tab  <file> <sql>\treturn query result as text with tabs\n"
    "\n"
    "--edit-rows  <file> <table> [<where-part>]\tlet user edit table row-wise\n"
    "--edit-row   <file> <table> [<where-part>]\tlet user edit row via dialog\n"
    "--insert-row <file> <table>\tlet user insert row via dialog\n";

} // namespace

void PrintBanner(FILE* stream, bool withEmptyLine)
{
    fprintf(stream, "%s v%d.%d (build %d)\n", productName, majorVersion, minorVersion, buildNumber);
    if (withEmptyLine)
        fputs("\n", stream);
}

void PrintUsage()
{
    fputs(usageText, stdout);
}
