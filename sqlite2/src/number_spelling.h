#pragma once

#include <string>
#include <string_view>

namespace sqlite2 {

// SQLite 2 stores a number written in an INSERT's VALUES or as an UPDATE's
// new value exactly as it was written: 007, 1.50, 1e3, -0 (a leading + is
// dropped). SQLite 3 would read them as numbers and store 7, 1.5, 1000.0, 0,
// so such literals are turned into the texts they were written as. Anything
// else, expressions included, is left alone. Returns the statement unchanged
// when there is nothing to turn.
std::string KeepNumberSpelling(std::string_view statement);

} // namespace sqlite2
