// Records that wait in this thread's queue.
#pragma once

#include "ipc/IpcMessage.h"

namespace juntora {

/// Takes the first record that has been posted to this thread out of its queue, as ipcReceive gives
/// it; messages before it that bring no record go too. False when none waits.
bool takePostedRecord(IpcMessage** record, int* opcode);

}  // namespace juntora
