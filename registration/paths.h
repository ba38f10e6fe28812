// Names of files as texts that can be compared.
#pragma once

#include <string>

namespace juntora {

/// GetFullPathNameA. Empty where that fails, or gives more than 4,095 bytes.
std::string fullPath(const std::string& path);

/// GetLongPathNameA: the file's own name. Empty where nothing is there.
std::string ownPath(const std::string& path);

/// Whether something is there, or what stands for it on this machine.
inline bool isThere(const std::string& path) { return !ownPath(path).empty(); }

}  // namespace juntora
