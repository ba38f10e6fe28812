// juntoractl as a tool: what needs notices from the hub signs on.
#pragma once

#include "tools/toolkit/ToolWindow.h"

namespace juntora {

inline constexpr char CONTROL_NAME[] = "juntoractl";
inline constexpr char CONTROL_WINDOW_CLASS[] = "JuntoractlWnd";

/// Signs on with a running hub as juntoractl, and lets signals end the loop from now on. Returns an
/// exit code, having complained of anything but EXIT_CODE_DONE.
int signOnForControl(ToolWindow& window);

}  // namespace juntora
