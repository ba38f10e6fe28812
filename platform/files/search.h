// Going through a directory.
#pragma once

#include "platform/files/attributes.h"
#include "platform/types.h"

namespace juntora {

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(-1);

struct WIN32_FIND_DATAA {
    DWORD dwFileAttributes;
    DWORD nFileSizeHigh;
    DWORD nFileSizeLow;
    char cFileName[260];
};

/// Begins a search and writes its first entry. The last part of `path` is a pattern: "*" stands for
/// any characters, "?" for one that is no dot, or for none in front of a dot and at the end; a dot
/// also matches the end of a name that a "*" or "?" follows, so that "*.*" is every name. Case does
/// not matter. "." and ".." come first if they match, the others in the order of their names
/// without regard to case. The names are those at the time of this call; what has gone before its
/// turn, and links that lead nowhere, are left out.
///
/// Returns a handle for FindNextFileA, to be given up with FindClose; one thread at a time may use
/// it. INVALID_HANDLE_VALUE with ERROR_FILE_NOT_FOUND if nothing matches, ERROR_PATH_NOT_FOUND
/// if there is no such directory, ERROR_BAD_NETPATH for a share that is not mounted, or others.
HANDLE FindFirstFileA(const char* path, WIN32_FIND_DATAA* data);

/// Writes the next entry. 0 with ERROR_NO_MORE_FILES at the end, or ERROR_INVALID_HANDLE.
BOOL FindNextFileA(HANDLE search, WIN32_FIND_DATAA* data);

/// 0 with ERROR_INVALID_HANDLE for what is no search.
BOOL FindClose(HANDLE search);

}  // namespace juntora
