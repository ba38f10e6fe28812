// What the desktop's shell says of files, and does with them.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Writes the name that a person is shown for a file that is there (its last component, as the
/// folder spells it), cut to `capacity` bytes with its NUL. False where nothing is there, and for a
/// root.
bool SHGetFileInfoA(const char* path, char* displayName, int capacity);

/// Has the desktop show a file or a page in the viewer for its kind, by the xdg-open that PATH
/// leads to, and does not wait. `file` is a path, or an address with a scheme of two characters or
/// more in front ("https:...", "mailto:..."), which is handed on as it is; either is one argument,
/// never an option, whatever stands in it. `verb` is "open"; the others are there for the
/// platform's sake. Returns more than 32; an error of the platform's up to 32 where the file isn't
/// there or nothing could be started. What becomes of the viewer nobody tells.
int ShellExecuteA(HWND owner, const char* verb, const char* file, const char* arguments,
                  const char* folder, int show);

}  // namespace juntora
