// Files for a while.
#pragma once

#include "platform/types.h"

namespace juntora {

/// The folder for temporary files with a trailing separator (TMPDIR, else /tmp/). Returns its
/// length, 0 when it does not fit into `capacity` or does not exist.
DWORD GetTempPathA(DWORD capacity, char* buffer);

/// Makes an empty file with a new name of `prefix`, a number and `extension` in `folder`, mode
/// 0600, and writes its path, at most 260 bytes, to `buffer`. Returns non-zero on success.
UINT GetTempFileNameA(const char* folder, const char* prefix, char* buffer,
                      const char* extension = ".tmp");

}  // namespace juntora
