// The numbers of the messages by which the hub's request dispatch reaches the main dialog; valid
// from before main on. 0 where the desktop cannot be used.
#pragma once

#include "platform/types.h"

namespace juntora {

extern const UINT g_nShowHubMessage;
extern const UINT g_nCloseAppsMessage;
extern const UINT g_nStartPlanchetMessage;

}  // namespace juntora
