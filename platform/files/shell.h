// What the desktop's shell says of files, and does with them.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Writes the name that a person is shown for a file that is there (its last component, as the
/// folder spells it), cut to `capacity` bytes with its NUL. False where nothing is there, and for a
/// root.
bool SHGetFileInfoA(const char* path, char* displayName, int capacity);

/// Has the desktop show a file or a page in the viewer for its kind, by xdg-open, and does not
/// wait. `verb` is "open"; the others are there for the platform's sake. Returns more than 32; an
/// error of the platform's up to 32 where nothing could be started. What becomes of the viewer
/// nobody tells.
int ShellExecuteA(HWND owner, const char* verb, const char* file, const char* arguments,
                  const char* folder, int show);

}  // namespace juntora
