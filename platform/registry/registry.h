// The registry: keys in a tree, each with named values.
//
// Two hives hold it, each a file of its own. The user's is juntora/registry.db in $XDG_DATA_HOME,
// else in ~/.local/share; the machine's is /var/lib/juntora/registry.db, which all may read and the
// administrator, effective user 0, may write. JUNTORA_REGISTRY, an absolute path, names a folder
// that holds both instead, as user.db and machine.db. A file that is not there reads as an empty
// hive and is made by the first write, or opening for writing; a new one has the key
// `Software\Classes`. A hive's owner and mode are checked: one that others could have written is
// refused.
//
// HKEY_CLASSES_ROOT is `Software\Classes` of the user laid over that of the machine: a key is there
// if either has it, its subkeys and values are those of both, and of two values of one name the
// user's counts. A value is written to the user's key if that exists, else to the machine's. A new
// key is made in the user's hive if the user's has all of the path that exists, more of it than the
// bare `Software\Classes`; else in the machine's. What is deleted is what a read would find first;
// the machine's may show in its place.
//
// Paths are elements of 1 to 255 bytes between "\"; separators in a row count as one, those at the
// ends not at all. Case does not count for the letters A to Z, in keys and values; what was made
// first keeps its spelling. Other bytes count as they are. "/" is a letter like any other. Value
// names have up to 16,383 bytes; the name "", or null, is the key's default value. Values have up
// to 1 MiB.
//
// All functions return ERROR_SUCCESS or an error, and leave GetLastError alone. Beside those that
// the functions name:
//   ERROR_FILE_NOT_FOUND      there is no such key or value
//   ERROR_ACCESS_DENIED       the file is not this user's to read or write, or the handle was not
//                             opened for this
//   ERROR_INVALID_HANDLE      not a key that is open
//   ERROR_INVALID_PARAMETER   a null where none may be, a name or value that is too long
//   ERROR_KEY_DELETED         the key that the handle stands for has been deleted
//   ERROR_LOCK_FAILED         another program has kept the hive locked for 3 s; for 0.1 s, where
//                             that has just happened
//   ERROR_BADDB               the hive's file is damaged or no database
//   ERROR_NOT_REGISTRY_FILE   it is some other database, or a registry of another version
//   ERROR_REGISTRY_IO_FAILED  the system failed to read or write; ERROR_DISK_FULL for want of room
// Where a file stands in the way, it is left as it is, and one line on standard error, once for a
// hive in each process, tells which and what to do.
//
// Any thread may call any function, with any handle. Each write is whole or not at all, in the
// order of all processes that write, and the next read of every process sees it. A call may block
// for as long as another program writes, at most 3 s. A hive's file stays open between calls; it is
// closed before a fork, and both sides open it anew. Handles stay good in the child. A file that is
// deleted or replaced is noticed at the next write.
#pragma once

#include <cstdint>
#include <string>

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

/// An open key of this process, to be given up with RegCloseKey; null is none.
class RegistryKey;
using HKEY = RegistryKey*;

/// Open always, with all access; never to be closed.
inline const HKEY HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(std::uintptr_t{0x80000000});
inline const HKEY HKEY_CURRENT_USER = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});
inline const HKEY HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(std::uintptr_t{0x80000002});

/// What a handle may be used for. Reaching keys below it takes none of these.
using REGSAM = DWORD;
inline constexpr REGSAM KEY_QUERY_VALUE = 1;         ///< RegQueryValueExA, RegEnumValueA.
inline constexpr REGSAM KEY_SET_VALUE = 2;           ///< RegSetValueExA, RegDeleteValueA.
inline constexpr REGSAM KEY_ENUMERATE_SUB_KEYS = 8;  ///< RegEnumKeyExA.
inline constexpr REGSAM KEY_READ = 0x20019;
inline constexpr REGSAM KEY_WRITE = 0x20006;
inline constexpr REGSAM KEY_ALL_ACCESS = 0xF003F;

// Types of values. They are the writer's word: nothing is checked or added, so that a text has a
// closing zero only if it was written with one.
inline constexpr DWORD REG_SZ = 1;         ///< A text with its closing zero.
inline constexpr DWORD REG_EXPAND_SZ = 2;  ///< The same, with %NAMES% of the environment in it.
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;     ///< 32 bits, lowest byte first.
inline constexpr DWORD REG_MULTI_SZ = 7;  ///< Texts with their closing zeros, and one zero more.

/// Opens a key that is there; an empty or null path opens `key` itself once more. Access that means
/// writing is ERROR_ACCESS_DENIED where the hive may not be written.
DWORD RegOpenKeyExA(HKEY key, const char* path, REGSAM access, HKEY* result);
/// The same with all access, as far as the hive may be written; UTF-16 in this machine's order of
/// bytes. Half a surrogate pair is ERROR_INVALID_PARAMETER.
DWORD RegOpenKeyW(HKEY key, const char16_t* path, HKEY* result);

inline constexpr DWORD REG_CREATED_NEW_KEY = 1;
inline constexpr DWORD REG_OPENED_EXISTING_KEY = 2;

/// Opens a key, and makes it with all above it that are missing; `disposition`, if not null, tells
/// which of the two.
DWORD RegCreateKeyExA(HKEY key, const char* path, REGSAM access, HKEY* result, DWORD* disposition);
/// The same with all access.
DWORD RegCreateKeyA(HKEY key, const char* path, HKEY* result);

/// Gives up a handle. A predefined key stays open, and that is no error.
DWORD RegCloseKey(HKEY key);

/// Deletes a key with its values. One that has subkeys is ERROR_ACCESS_DENIED, an empty or null
/// path ERROR_INVALID_PARAMETER.
DWORD RegDeleteKeyA(HKEY key, const char* path);
/// Deletes a key with all below it, at once.
DWORD RegDeleteTreeA(HKEY key, const char* path);

/// Reads the name of subkey number `index`, from 0 in the order of their names. `length` is the
/// room in bytes, NUL included, and gets the name's length without it. ERROR_NO_MORE_ITEMS behind
/// the last; ERROR_MORE_DATA if the room is too small, and nothing is changed.
DWORD RegEnumKeyExA(HKEY key, DWORD index, char* name, DWORD* length);

/// Reads a value. `type`, `data` and `size` may be null; `size` is the room at `data` in bytes and
/// gets the size of the value. ERROR_MORE_DATA if that is larger than the room, with the type and
/// the size, and nothing at `data`. Without `data`: type and size alone. With `data` and no `size`:
/// ERROR_INVALID_PARAMETER.
DWORD RegQueryValueExA(HKEY key, const char* name, DWORD* type, void* data, DWORD* size);
/// The text of a value of the type REG_SZ, of a key that `path` leads to. Where there is none, or
/// one of another type, that is ERROR_FILE_NOT_FOUND, and `*text` is empty, as for any error.
DWORD ReadRegistryText(HKEY key, const std::string& path, const char* name, std::string* text);
/// Writes a value of `size` bytes, in the place of one of that name.
DWORD RegSetValueExA(HKEY key, const char* name, DWORD type, const void* data, DWORD size);
DWORD RegDeleteValueA(HKEY key, const char* name);
/// Reads value number `index`, from 0 in the order of their names: the name as RegEnumKeyExA does,
/// the rest as RegQueryValueExA. ERROR_MORE_DATA if either does not fit.
DWORD RegEnumValueA(HKEY key, DWORD index, char* name, DWORD* length, DWORD* type, void* data,
                    DWORD* size);

/// From here on a predefined key stands for `key` in all threads of this process; null: for itself
/// again. Lasts beyond the closing of `key`. Handles that are open stay what they are.
DWORD RegOverridePredefKey(HKEY predefined, HKEY key);

}  // namespace juntora
