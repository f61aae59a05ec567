#pragma once

namespace sqlite2 {

// Called by the pager before each step that changes a file on disk: a write
// to the database or its journal, a create, a truncate, a delete. Each is a
// point after which a crash leaves a different state to recover from.
//
// The library's own definition does nothing. Tests that count these steps,
// or end the process at one of them, link their own definition ahead of the
// library; the program itself carries no hook.
void BeforeFileChange();

} // namespace sqlite2
