// The part of a window that is its process's own: its procedure.
#pragma once

#include <string_view>

#include "platform/desktop/Layout.h"

namespace juntora::desktop {

struct LocalWindow {
    HWND window;  ///< The handle that this entry is for.
    WNDPROC procedure;
    LPARAM userData;
};

/// The entry of a window of this process, null for any other. One load and a comparison.
LocalWindow* localWindow(HWND window);
/// The entry at the index of a window that the calling thread is making or unmaking.
LocalWindow& localEntry(HWND window);

/// The procedure of a class of this process; null when there is none.
WNDPROC classProcedure(std::string_view className);
/// The icon's resource number of a class of this process; 0 when there is none.
int classIcon(std::string_view className);

}  // namespace juntora::desktop
