// Variables that are the host's and not the platform's: their names count letter by letter.
// Not for a thread while another one changes the environment.
#pragma once

#include <string>

namespace juntora::kernel {

/// A variable of the process; empty where it is not set.
std::string hostEnvironment(const char* name);

/// The folder of the user's own that `variable` names, else `below` (which begins with "/") the
/// home folder. Empty where neither is an absolute path.
std::string userFolder(const char* variable, const char* below);

/// Where the user's programs keep what they are not to lose ($XDG_DATA_HOME, else ~/.local/share).
std::string userDataFolder();

}  // namespace juntora::kernel
