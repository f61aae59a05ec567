#pragma once

#include <string>

namespace sqlite2 {

// The name of the module through which the owner's connection shows the
// tables of the file attached as `name`.
std::string AttachedModuleName(const std::string& name);

} // namespace sqlite2
