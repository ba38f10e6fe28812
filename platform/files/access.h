// What this user may do with a file, and changing it. Paths and spellings are as in status.h, and
// failures set GetLastError.
#pragma once

#include "platform/files/attributes.h"
#include "platform/types.h"

namespace juntora {

inline constexpr int ACCESS_EXISTS = 0;
inline constexpr int ACCESS_WRITE = 2;
inline constexpr int ACCESS_READ = 4;
inline constexpr int ACCESS_READ_WRITE = ACCESS_READ | ACCESS_WRITE;

/// Whether what a path leads to is there and allows all of `mode` to this process's effective user.
bool CheckAccess(const char* path, int mode);

inline constexpr int MODE_OWNER_READ_WRITE = 0600;

/// Sets the rights of a file: `mode` is a sum of 0400 (the owner reads) and 0200 (the owner
/// writes); all others get none. Who may read a folder may also enter it.
bool ChangeMode(const char* path, int mode);

/// Sets a file's attributes, of which FILE_ATTRIBUTE_READONLY alone can be set here: with it nobody
/// may write the file, without it at least its owner may.
bool SetFileAttributesA(const char* path, DWORD attributes);

/// Whether a path names a folder, and no link to one, that is this user's and that nobody else may
/// write: what lies in there is by this user. For folders in places that all users share.
bool IsOwnFolder(const char* path);

}  // namespace juntora
