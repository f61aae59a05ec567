#pragma once

#include "format.h"

namespace sqlite2 {

// [+-]? DIGIT+ ('.' DIGIT+)? ([eE] [+-]? DIGIT+)?
bool PassesNumberTest(std::string_view text);
// SQLite 2's own text-to-double conversion, in extended precision.
double TextToNumber(std::string_view text);
// The base-64 text whose byte order is the numeric order.
std::string SortableNumberText(double value);

struct IndexField {
    const Value* value;
    bool numeric;
};
// Fields tagged a (NULL), b (number) or c (text), each ended by 0x00, then the rowid key.
std::string EncodeIndexKey(const std::vector<IndexField>& fields, int32_t rowid);

} // namespace sqlite2
