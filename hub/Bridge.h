// What the hub needs of the automation bridge, by which tools that are driven by automation objects
// take part like all others. The bridge stands above the hub and registers itself here.
#pragma once

#include <memory>

#include "ipc/IpcMessage.h"

namespace juntora {

class ipcDes;

class Bridge {
public:
    virtual ~Bridge() = default;

    /// Makes the bridge's stand-by windows and enters them in the hub's table. 0 on failure.
    virtual int createAllWindows() = 0;

    /// Sees every record before the hub does, forwarded ones included, and returns true when it has
    /// finished with it; `*result` is then the answer. Changes neither target nor replyLength, and
    /// returns at once.
    virtual bool firstLook(int opcode, IpcMessage* record, int* result) = 0;
};

using BridgeMaker = std::unique_ptr<Bridge> (*)(ipcDes* hub);

/// Sets what makes the bridges of hubs from now on; null (as at first) for hubs without one.
void setBridgeMaker(BridgeMaker maker);

/// A new bridge of the hub, null if there is none to be had.
std::unique_ptr<Bridge> makeBridge(ipcDes* hub);

}  // namespace juntora
