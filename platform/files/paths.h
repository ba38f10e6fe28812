// Paths as texts, and the current directory.
//
// Drive C: is the root of this machine's files; a drive D: to Z: is a link "d:" to "z:" in the
// folder juntora/drives of the user's configuration ($XDG_CONFIG_HOME, else $HOME/.config). A path
// that starts with one separator is on C:, whatever the current drive, since that is how everything
// on this machine names its files. "X:name" is relative to the current directory if that is on X:,
// else to the root of X:. Both separators are understood everywhere.
//
// No call throws; any thread may call them.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Parts of a path, either separator, each out argument may be null; buffers of 256 bytes, drive 3.
/// What is longer is cut. A drive is any character and a colon; the extension has its dot.
void SplitPath(const char* path, char* drive, char* directory, char* name, char* extension);

/// Makes a path absolute, by its text alone: nothing needs to be there. "/" becomes "\", separators
/// in a row become one (two at the start of a path to a server), "." goes, ".." goes with the name
/// before it and never climbs above the drive or the share. A separator at the end stays, as do
/// blanks and further dots at the end of a name: on this machine they are part of it.
///
/// Writes the path to `buffer` of `capacity` bytes and returns its length without NUL. If it does
/// not fit: the capacity that it needs, NUL included, and the buffer is untouched. 0 for a null or
/// empty path (ERROR_INVALID_NAME), or if there is no current directory any more.
DWORD GetFullPathNameA(const char* path, DWORD capacity, char* buffer);

/// The current directory as "C:\home\me", on the drive D: to Z: of which the link leads there or
/// above it, if there is one. Null if it cannot be had within `capacity` bytes.
char* CurrentDirectory(char* buffer, int capacity);

/// Changes the current directory of this process. 0 with GetLastError.
BOOL SetCurrentDirectoryA(const char* path);

/// Writes the name that a person is shown for a file, its name and extension, to `title` of
/// `capacity` bytes. Returns 0; the capacity that it needs, if it does not fit; or -1 for what
/// names no file: null, empty, with "*", "[" or "]", or ending in a separator or a colon.
short GetFileTitleA(const char* file, char* title, WORD capacity);

}  // namespace juntora
