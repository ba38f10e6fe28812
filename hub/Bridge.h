// What the hub needs of the automation bridge, by which tools that are driven by automation objects
// take part like all others. The bridge stands above the hub and registers itself here.
#pragma once

#include <cstdint>
#include <memory>

#include "common/PathName.h"
#include "ipc/IpcMessage.h"
#include "platform/types.h"

namespace juntora {

class ipcDes;

class Bridge {
public:
    virtual ~Bridge() = default;

    /// Makes the bridge's stand-by windows. 0 on failure.
    virtual int createAllWindows() = 0;

    /// Sees every record before the hub does, forwarded ones included, and returns true when it has
    /// finished with it; `*result` is then the answer. Changes neither target nor replyLength, and
    /// returns at once.
    virtual bool firstLook(int opcode, IpcMessage* record, int* result) = 0;

    /// Whether a call of a tool's object is being waited for, with the bridge on the stack: neither
    /// bridge nor hub may end then.
    virtual bool isCalling() const = 0;

    /// A tool signs off, or has died.
    virtual void clientGone(HWND window) = 0;

    /// The window of a tool that holds a file in a way that stands against `access` (1 read, 2
    /// write, 3 both) without having told the hub; 0 if there is none.
    virtual HWND toolForLockedFile(const PathName& file, std::uint32_t access) = 0;

    /// The window of a tool, of this very one unless `window` is 0, that has marked a file without
    /// having told the hub, with the flags asked for in `*flags`; these become what it has set. 0
    /// if there is none.
    virtual HWND toolForMonitoredFile(HWND window, const PathName& file, std::uint32_t* flags) = 0;
};

using BridgeMaker = std::unique_ptr<Bridge> (*)(ipcDes* hub);

/// Sets what makes the bridges of hubs from now on; null (as at first) for hubs without one.
void setBridgeMaker(BridgeMaker maker);

/// A new bridge of the hub, null if there is none to be had.
std::unique_ptr<Bridge> makeBridge(ipcDes* hub);

}  // namespace juntora
