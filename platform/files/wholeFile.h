// Files that are written, read and deleted as a whole. Paths and spellings are as in status.h, and
// failures set GetLastError.
#pragma once

#include <cstddef>

#include "platform/types.h"

namespace juntora {

/// Writes a file anew, whole; a new one gets mode 0600. False when any step failed.
bool WriteWholeFile(const char* path, const void* data, std::size_t bytes);

/// Adds to the end of a file, in one piece where the system can; a new one gets mode 0600. Never
/// blocks on what stands in the file's place. False when any step failed.
bool AppendToFile(const char* path, const void* data, std::size_t bytes);

/// Reads up to `bytes` bytes from the start of a regular file; -1 when it cannot be opened or is no
/// regular file (a folder, a pipe). Never blocks on what stands in the file's place.
long ReadFileStart(const char* path, void* data, std::size_t bytes);

/// Deletes a file's entry; no folder's.
bool DeleteFileA(const char* path);

}  // namespace juntora
