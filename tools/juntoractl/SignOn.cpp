#include "tools/juntoractl/SignOn.h"

#include "platform/kernel/signals.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/Output.h"

namespace juntora {

int signOnForControl(ToolWindow& window) {
    if (window.handle() == 0 || !ipcFindHub()) {
        return complainOfNoHub();
    }
    QuitOnSignals();
    switch (window.signOn(CONTROL_NAME, false)) {
        case ToolWindow::SignOn::DONE:
            return EXIT_CODE_DONE;
        case ToolWindow::SignOn::NO_HUB:
            return complainOfNoHub();
        default:
            complain("the hub refused the sign-on");
            return EXIT_CODE_REFUSED;
    }
}

}  // namespace juntora
