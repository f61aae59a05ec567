#pragma once

#include "status.h"

#include <string_view>

namespace sqlite2 {

// ATTACH and DETACH on a 2.x file. 2.8 attaches other 2.x files only; this
// engine serves one file per connection, so ATTACH always fails and leaves
// every file as it was: in 2.8's words for the files 2.8 refuses too (an
// empty or missing file, a file that is not a 2.x database, a name in use),
// with a message of its own for another 2.x file. DETACH answers as 2.8 does
// for a name that was never attached.
// Returns Ok (with handled false) for any other statement.
Status RunAttachStatement(std::string_view statement, bool& handled);

} // namespace sqlite2
