// Kept alone in its file so that a test's own definition replaces it at link
// time without pulling anything else out of the library.
#include "file_change_steps.h"

namespace sqlite2 {

void BeforeFileChange() {}

} // namespace sqlite2
