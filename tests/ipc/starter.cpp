// A tool that starts the hub: "start" by itself, "attach" or "quit" (with a quit waiting in its
// queue) by signing on; the word is in STARTER_DOES. Prints the outcome as a line.
#include <cstdio>
#include <cstring>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/process.h"

using namespace juntora;

namespace {

class Starter : public ipc {
public:
    explicit Starter(HWND window) : ipc("Starter", window, 0, nullptr, 0, 1) {}
    int onRequest(int, IpcMessage*) override { return 1; }
};

HWND makeWindow() {
    WNDCLASSA description{};
    description.lpfnWndProc = DefWindowProcA;
    description.lpszClassName = "Starter";
    RegisterClassA(&description);
    return CreateWindowExA(0, "Starter", "starter", WS_POPUP, 0, 0, 0, 0, 0, 0);
}

}  // namespace

int main(int argc, char** argv) {
    SetProgramArguments(argc, argv);
    const char* does = GetEnvironment("STARTER_DOES");
    if (std::strcmp(does, "start") == 0) {
        std::printf("%d\n", ipcStartHub(0));
        return 0;
    }
    const bool hasQuit = std::strcmp(does, "quit") == 0;
    if (hasQuit) {
        PostQuitMessage(3);
    }
    const Starter starter(makeWindow());
    MSG message{};
    const bool quitsAgain = hasQuit && GetMessageA(&message, 0, 0, 0) == 0;
    std::printf("[%s] %d\n", starter.m_pName, quitsAgain ? static_cast<int>(message.wParam) : -1);
    return 0;
}
