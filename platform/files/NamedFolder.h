// Folders that the environment names.
#pragma once

#include <string>

namespace juntora::files {

/// The Linux path of the folder that a variable names, in either form, without a separator at its
/// end. Empty where the variable is unset or empty.
std::string namedFolder(const char* variable);

}  // namespace juntora::files
