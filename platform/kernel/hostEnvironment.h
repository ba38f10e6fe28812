// What the session has told this process of the host, which the platform's own environment, where
// names stand in any case of letters, does not change.
#pragma once

#include <string>

namespace juntora::kernel {

/// A variable of the process; empty where it is not set.
std::string hostEnvironment(const char* name);

/// The folder of the user's own that `variable` names, else `below` (which begins with "/") the
/// home folder. Empty where neither is an absolute path.
std::string userFolder(const char* variable, const char* below);

}  // namespace juntora::kernel
