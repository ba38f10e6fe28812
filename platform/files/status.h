// What is known of a file, and making and changing its entry.
//
// Paths are as in paths.h. A name that is not there in its exact spelling is looked for without
// regard to the case of A to Z, component by component. All calls set GetLastError on failure: for
// one, ERROR_FILE_NOT_FOUND if the file alone is missing, ERROR_PATH_NOT_FOUND if a directory on
// the way to it is. No call throws; any thread may call them.
#pragma once

#include <cstdint>

#include "platform/files/attributes.h"
#include "platform/types.h"

namespace juntora {

enum class FileKind { REGULAR, DIRECTORY, OTHER };

/// Times are seconds since 1970.
struct FileStatus {
    FileKind kind;
    std::int64_t size;  ///< Bytes.
    std::int64_t accessTime;
    std::int64_t modifyTime;
    std::int64_t createTime;  ///< Of the last change, where the file system keeps no birth time.
};

/// Reads the status of what a path leads to. False on failure; a path that ends in a separator and
/// is no root fails as well, with ERROR_FILE_NOT_FOUND, whatever is there.
bool ReadFileStatus(const char* path, FileStatus* status);

/// The FILE_ATTRIBUTE_ bits; INVALID_FILE_ATTRIBUTES on failure. A directory may end in a
/// separator.
DWORD GetFileAttributesA(const char* path);

/// Sets both times, to the second.
bool SetFileTimes(const char* path, std::int64_t accessTime, std::int64_t modifyTime);

/// Makes a directory, or an empty file. False with ERROR_ALREADY_EXISTS if anything is there, in
/// whatever case of letters.
bool MakeDirectory(const char* path);
bool MakeEmptyFile(const char* path);

/// The path by short names. There are none here: the path itself, if it leads to something. Returns
/// its length; the capacity that it needs, NUL included, if it does not fit (the buffer is
/// untouched then); 0 on failure.
DWORD GetShortPathNameA(const char* path, char* buffer, DWORD capacity);

/// The name of its own that a file has, in this machine's form: as the folders spell it, without
/// links on the way. A program or library may be named as the platform names it: where nothing is
/// there, ".exe" may be missing from the file's name, and ".so" stands for ".dll" and ".ocx".
/// Results as above.
DWORD GetLongPathNameA(const char* path, char* buffer, DWORD capacity);

}  // namespace juntora
