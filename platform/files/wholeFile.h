// Files that are written, read and deleted as a whole. Paths and spellings are as in status.h, and
// failures set GetLastError.
#pragma once

#include <cstddef>
#include <string>

#include "platform/types.h"

namespace juntora {

/// Writes a file anew, whole; a new one gets mode 0600. False when any step failed.
bool WriteWholeFile(const char* path, const void* data, std::size_t bytes);

/// Puts a file in the place of what has that name, in one step: whoever reads it gets the one or
/// the other whole, and what could not be written leaves the one before. Folders on the way are
/// made; a new file gets mode 0644. False when any step failed.
bool ReplaceWholeFile(const char* path, const void* data, std::size_t bytes);

enum class AppendResult {
    DONE,
    NOT_OPENED,
    NOT_WRITTEN,  ///< Not all of it: the file was there, and took no more.
};

/// Adds to the end of a file, in one piece where the system can; a new one gets mode 0600. Never
/// blocks on what stands in the file's place, nor is this process ended by a reader of it that
/// goes.
AppendResult AppendToFile(const char* path, const void* data, std::size_t bytes);

/// Reads up to `bytes` bytes from the start of a regular file; -1 when it cannot be opened or is no
/// regular file (a folder, a pipe). Never blocks on what stands in the file's place.
long ReadFileStart(const char* path, void* data, std::size_t bytes);

/// Reads a regular file of up to `limit` bytes. False with ERROR_FILE_TOO_LARGE for a larger one,
/// ERROR_ACCESS_DENIED for what is no regular file, and others; `bytes` is empty then.
bool ReadWholeFile(const char* path, std::size_t limit, std::string* bytes);

/// Copies a regular file, its rights included, of which others never get the one to write. The new
/// file is there whole or not at all. Where something is there already it is replaced, or, with
/// `failIfExists`, that is 0 with ERROR_ALREADY_EXISTS.
BOOL CopyFileA(const char* from, const char* to, BOOL failIfExists);

/// Deletes a file's entry; no folder's.
bool DeleteFileA(const char* path);

}  // namespace juntora
