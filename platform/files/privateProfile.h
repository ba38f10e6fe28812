// Private-profile files: settings that people write, in sections of keys with values. The form of
// their text is told in ProfileText.h.
//
// A file is named by any path of paths.h; a bare name lies in the current directory. Files of up to
// 256 MiB are read. A reader sees a file as one writer has left it: a write replaces it whole,
// under a lock among all processes of this layer that write it, keeping comments, order and line
// ends, rights and, where the system lets it, the owner. What a link leads to is replaced, not the
// link.
//
// A write is not forced to the disk: after a power cut the file may be that of some moments before.
//
// Any thread may call; no call throws but for want of memory.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Writes to `buffer` of `capacity` bytes:
///   the value of a key; if there is none, `standard` without the blanks behind it;
///   with a null `key`, the names of all keys of the section, each with its NUL, and one NUL more;
///   with a null `section`, the names of all sections in the same form.
/// Where there are no names, `standard` is written in their place. A null `standard` is "".
///
/// Returns how much has been written, without the last NUL. What does not fit is cut, the NUL or
/// the two NULs of a list included in the room: `capacity` - 1 is returned then, or `capacity` - 2
/// for a list, with ERROR_MORE_DATA. With room for 1 byte that is an empty text and 0; with none,
/// or a null buffer, nothing is written. ERROR_FILE_NOT_FOUND tells that `standard` was taken
/// because the file, section or key is not there; ERROR_INVALID_DATA, that the file is of 16-bit
/// characters, and others, that it cannot be read. GetLastError stays where all is well.
DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* standard,
                               char* buffer, DWORD capacity, const char* file);

/// The number that a value begins with, in decimal, with a sign or not; 0 where it begins with
/// none; the nearest that fits for one beyond 32 bits with a sign. `standard` where there is no
/// value.
UINT GetPrivateProfileIntA(const char* section, const char* key, int standard, const char* file);

/// Writes a value, and makes its section and file where they are missing, but no folder. A null
/// `value` deletes the key, a null `key` the section with all its keys; what is not there is
/// deleted already. Blanks around a value are not written; quotes around it are, and the reader
/// takes them off.
///
/// 0 with GetLastError, and the file is what it was: ERROR_INVALID_PARAMETER for a name or value
/// that could not be read again (empty names, line ends, "]" in a section, "=" in a key or ";" or
/// "[" in front of it); ERROR_ACCESS_DENIED for a file or folder that may not be written;
/// ERROR_LOCK_FAILED if somebody has kept the file locked for 10 s; ERROR_INVALID_DATA for a file
/// of 16-bit characters; ERROR_DISK_FULL and others.
BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value,
                                const char* file);

}  // namespace juntora
