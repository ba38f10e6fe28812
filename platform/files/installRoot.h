// Where the suite is installed.
#pragma once

#include <string>

namespace juntora {

/// The folder that holds the suite's programs (bin/) and what is installed beside them (share/), in
/// this machine's form and without a separator at its end: what JUNTORA_ROOT names; if that is
/// unset or empty, the folder above the running program's, where that is a bin/ with a
/// share/voltara/ beside it, as in a build tree. Empty for a program that lies elsewhere.
///
/// JUNTORA_ROOT is read at each call; any thread may call.
std::string InstallRoot();

/// The folder that stands for the system's own, in which `System32` holds the system's programs:
/// what `systemroot` names; if that is unset, lib/voltara below the install root. Empty where
/// neither is there. As for the threads, the same.
std::string SystemRoot();

}  // namespace juntora
