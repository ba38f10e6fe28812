// Patterns of file names.
#pragma once

#include <string_view>

namespace juntora::files {

/// Whether a pattern of FindFirstFileA stands for the name. Takes at most as many steps as the
/// product of the two lengths.
bool matchesWildcard(std::string_view pattern, std::string_view name);

}  // namespace juntora::files
