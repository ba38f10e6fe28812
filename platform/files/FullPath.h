// Absolute paths in the platform's form.
#pragma once

#include <string>
#include <string_view>

namespace juntora::files {

/// The current directory; empty with errno if there is none any more.
std::string currentFolder();

/// As GetFullPathNameA, of a path that is not empty. Empty with errno if it needs the current
/// directory and there is none.
std::string fullPath(std::string_view path);

}  // namespace juntora::files
