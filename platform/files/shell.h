// What the desktop's shell says of files.
#pragma once

namespace juntora {

/// Writes the name that a person is shown for a file that is there (its last component, as the
/// folder spells it), cut to `capacity` bytes with its NUL. False where nothing is there, and for a
/// root.
bool SHGetFileInfoA(const char* path, char* displayName, int capacity);

}  // namespace juntora
