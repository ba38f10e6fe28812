#include "tools/juntoractl/HubAccess.h"

#include "ipc/ipc.h"
#include "platform/desktop/desktop.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {

int withHub(const std::function<int()>& request) {
    if (!ipcObserve(IPC_NO_IDENTITY)) {
        return complainOfNoHub();
    }
    const int code = request();
    ipcMemClose();
    return ipcFindHub() != 0 ? code : complainOfNoHub();
}

int complainOfNoHub() {
    // A desktop that cannot be opened has been complained of already.
    if (OpenDesktop()) {
        complain("no hub runs on this desktop. Start a tool, or the hub itself with: juntora");
    }
    return EXIT_CODE_NO_HUB;
}

}  // namespace juntora
