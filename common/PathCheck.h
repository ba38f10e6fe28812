// What file systems allow in the names of files. PathName::checkForVolume and checkForKind apply it
// to whole paths.
#pragma once

#include <string_view>

namespace juntora {

/// Kinds of file systems by the names that they allow. A name that is not known, such as those of
/// this machine's own file systems, counts as long FAT.
enum FileSystemKind : int {
    FILE_SYSTEM_FAT_SHORT = 0,  ///< Names of 8 and 3 characters; all others take long names.
    FILE_SYSTEM_FAT_LONG = 1,
    FILE_SYSTEM_NTFS = 2,
    FILE_SYSTEM_HPFS = 3,
    FILE_SYSTEM_FAT32 = 4,
    FILE_SYSTEM_NETWARE = 5,
    FILE_SYSTEM_POSIX = 6,  ///< Knows no drives and shares: each component is a name.
};

/// Why a path is not legal.
enum PathError : unsigned long {
    PATH_ERROR_LONG_EXTENSION = 815,  ///< Short names: more than 3 characters.
    PATH_ERROR_LONG_BASE = 816,       ///< Short names: more than 8 characters.
    PATH_ERROR_CHARACTER = 817,       ///< A forbidden character.
    PATH_ERROR_SECOND_DOT = 823,      ///< Short names.
    PATH_ERROR_LONG_COMPONENT = 824,  ///< Long names: 256 characters or more in a component.
    PATH_ERROR_LONG_PATH = 825,       ///< 261 characters or more.
};

/// The kind of a file system by its name, in any case of letters, and by the longest component that
/// it takes, in bytes.
int fileSystemKind(std::string_view name, unsigned long maxComponent);

/// Whether a character may stand in a file's name. Bytes above 127 may; 0 never.
bool isLegalNameCharacter(char c, int kind);
/// The same for a path: names, and what may stand between them.
bool isLegalPathCharacter(char c, int kind);

/// Whether a component is legal: 1, or 0, or -1 for an empty one. `error` as for
/// PathName::checkForKind.
int checkShortName(std::string_view component, unsigned long* error);
int checkLongName(std::string_view component, unsigned long* error);

}  // namespace juntora
