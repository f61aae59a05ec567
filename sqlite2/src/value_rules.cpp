#include "value_rules.h"

#include "concat_operands.h"
#include "index_key.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace sqlite2 {

namespace {

std::string RealText(double value)
{
    char text[64];
    snprintf(text, sizeof text, "%.15g", value);
    return text;
}

int NumericCollation(void*, int lengthA, const void* a, int lengthB, const void* b)
{
    return CompareAs28({static_cast<const char*>(a), size_t(lengthA)}, {static_cast<const char*>(b), size_t(lengthB)});
}

int TextCollation(void*, int lengthA, const void* a, int lengthB, const void* b)
{
    int order = memcmp(a, b, size_t(std::min(lengthA, lengthB)));
    return order ? order : lengthA - lengthB;
}

// 2.8's sum(): every value as a double; 0 for no rows at all.
struct Sum {
    double total = 0;
};

void SumStep(sqlite3_context* context, int, sqlite3_value** arguments)
{
    auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(context, sizeof(Sum)));
    if (sum && sqlite3_value_type(arguments[0]) != SQLITE_NULL)
        sum->total += sqlite3_value_double(arguments[0]);
}

void SumFinal(sqlite3_context* context)
{
    auto* sum = static_cast<Sum*>(sqlite3_aggregate_context(context, 0));
    sqlite3_result_double(context, sum ? sum->total : 0.0);
}

// An operand of || as 2.8 joins it: reals with 15 significant digits.
void ConcatText(sqlite3_context* context, int, sqlite3_value** arguments)
{
    if (sqlite3_value_type(arguments[0]) != SQLITE_FLOAT) {
        sqlite3_result_value(context, arguments[0]);
        return;
    }
    const std::string text = RealText(sqlite3_value_double(arguments[0]));
    sqlite3_result_text(context, text.c_str(), int(text.size()), SQLITE_TRANSIENT);
}

} // namespace

int CompareAs28(std::string_view a, std::string_view b)
{
    const bool numberA = PassesNumberTest(a);
    const bool numberB = PassesNumberTest(b);
    if (numberA && numberB) {
        double x = TextToNumber(a), y = TextToNumber(b);
        return x < y ? -1 : x > y ? 1 : 0;
    }
    if (numberA != numberB)
        return numberA ? -1 : 1;
    int order = memcmp(a.data(), b.data(), std::min(a.size(), b.size()));
    if (order != 0)
        return order;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

void Install28Rules(sqlite3* connection)
{
    sqlite3_create_collation(connection, kNumericCollation, SQLITE_UTF8, nullptr, NumericCollation);
    // The names a 2.x column definition may give its class with.
    sqlite3_create_collation(connection, "numeric", SQLITE_UTF8, nullptr, NumericCollation);
    sqlite3_create_collation(connection, "text", SQLITE_UTF8, nullptr, TextCollation);
    sqlite3_create_function(connection, "sum", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, nullptr, SumStep,
                            SumFinal);
    sqlite3_create_function(connection, kConcatTextFunction, 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                            ConcatText, nullptr, nullptr);
}

Value StoredValue(sqlite3_value* value)
{
    switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
        return std::nullopt;
    case SQLITE_INTEGER:
        // 2.8 computes with 32-bit integers: 2147483647+1 is stored as -2147483648.
        return std::to_string(int32_t(uint32_t(uint64_t(sqlite3_value_int64(value)))));
    case SQLITE_FLOAT:
        return RealText(sqlite3_value_double(value));
    default: {
        const char* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        return std::string(text ? text : ""); // a text ends at its first NUL in a 2.x file
    }
    }
}

const char* ResultText(sqlite3_stmt* statement, int column, std::string& buffer)
{
    // One look-up of the value serves both its type and its text; integers
    // are spelt here rather than converted in place by SQLite, which would
    // allocate for each of them.
    sqlite3_value* value = sqlite3_column_value(statement, column);
    switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
        return nullptr;
    case SQLITE_FLOAT:
        buffer = RealText(sqlite3_value_double(value));
        return buffer.c_str();
    case SQLITE_INTEGER: {
        char digits[24];
        buffer.assign(digits, std::to_chars(digits, digits + sizeof digits, sqlite3_value_int64(value)).ptr);
        return buffer.c_str();
    }
    default:
        return reinterpret_cast<const char*>(sqlite3_value_text(value));
    }
}

} // namespace sqlite2
