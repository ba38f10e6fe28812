// A file's state in the platform's words.
#pragma once

#include <sys/stat.h>

#include <string_view>

#include "platform/types.h"

namespace juntora::files {

/// The FILE_ATTRIBUTE_ bits of the file that is called `name` in its directory.
DWORD attributesOf(const struct statx& state, std::string_view name);

}  // namespace juntora::files
