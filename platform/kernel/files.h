// The few file operations below the record transport.
#pragma once

#include <cstddef>

#include "platform/types.h"

namespace juntora {

/// The folder for temporary files with a trailing separator (TMPDIR, else /tmp/). Returns its
/// length, 0 when it does not fit into `capacity` or does not exist.
DWORD GetTempPathA(DWORD capacity, char* buffer);

/// Makes an empty file with a new name of `prefix`, a number and ".tmp" in `folder`, mode 0600, and
/// writes its path, at most 260 bytes, to `buffer`. Returns non-zero on success.
UINT GetTempFileNameA(const char* folder, const char* prefix, char* buffer);

/// Writes a file anew, whole. False when any step failed.
bool WriteWholeFile(const char* path, const void* data, std::size_t bytes);

/// Reads up to `bytes` bytes from the start of a regular file; -1 when it cannot be opened or is no
/// regular file (a folder, a pipe). Never blocks on what stands in the file's place.
long ReadFileStart(const char* path, void* data, std::size_t bytes);

bool DeleteFileA(const char* path);

}  // namespace juntora
