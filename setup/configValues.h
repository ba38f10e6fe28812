// Reading and writing settings, in the user's "Voltara.ini" (setup/configFile.h) or in any other
// private-profile file (platform/files/privateProfile.h). For one thread, as setup/setupSearch.h
// tells.
#pragma once

#include "platform/types.h"

namespace juntora {

/// What stands in a list of sections where the file has none.
inline constexpr char NO_SECTIONS[] = "+++___~~~!!!@@@###$$$%%%^^^&&&";

/// Writes to `buffer` of `size` bytes, bounded and closed by a NUL (a list by two):
///   the value of a key, expanded as setup/pathList.h tells, each item in quotes with `quote`; if
///   the key is not there, `standard`, expanded too;
///   with a null `key`, the names of all keys of the section, each with its NUL; if there are none,
///   `standard`;
///   with a null `section`, those of all sections; NO_SECTIONS if there are none.
/// A null `file` stands for Voltara.ini; for a value so does an empty name. 0 if what is read is
/// empty, else 1. GetLastError tells why nothing was read, and of what did not fit
/// (ERROR_MORE_DATA).
int GetConfigString(const char* section, const char* key, const char* standard, char* buffer,
                    DWORD size, const char* file, bool quote);

/// The same without quotes, a value from Voltara.ini; lists are empty.
int GetConfigStringDefault(const char* section, const char* key, const char* standard, char* buffer,
                           DWORD size);

/// The number that a value begins with, as GetPrivateProfileIntA reads it.
int GetConfigInt(const char* section, const char* key, int standard, const char* file);

/// Writes a value, merged with the one that is there as setup/pathList.h tells; null: an empty one.
/// Always 1; GetLastError is then 0, or tells why the file could not be written. A null `file`
/// stands for Voltara.ini.
int WriteConfigString(const char* section, const char* key, const char* value, const char* file,
                      bool quote);

}  // namespace juntora
