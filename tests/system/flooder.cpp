// A tool that sends as fast as it can, and one that counts: flooder receive COUNT, or
// flooder send WINDOW COUNT.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"

namespace juntora::test {
namespace {

class Link;
Link* g_link = nullptr;

LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

HWND makeWindow() {
    const WNDCLASSA windowClass{0, handle, 0, 0, 0, "Flooder"};
    RegisterClassA(&windowClass);
    return CreateWindowExA(0, "Flooder", "", 0, 0, 0, 0, 0, 0, 0);
}

class Link : public ipc {
public:
    explicit Link(const char* name) : ipc(name, makeWindow(), 0, nullptr, 0, 0) { g_link = this; }

    int onRequest(int opcode, IpcMessage* record) override {
        if (opcode == IPC_COMMAND && std::atoi(record->text) == received) {
            ++received;
        }
        return 1;
    }

    int received = 0;  ///< In order; one out of order is never counted, nor is what follows it.
};

LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (g_link == nullptr || ipcReceive(message, wParam, lParam, &record, &opcode) == 0) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    const int result = g_link->onRequest(opcode, record);
    ipcRelease(record);
    return result;
}

int receive(int count) {
    const Link link("Receiver");
    std::printf("%x\n", ipcSelfId);
    std::fflush(stdout);
    MSG message{};
    while (link.received < count && GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return link.received == count ? 0 : 1;
}

int send(HWND target, int count) {
    const Link link("Flooder");
    for (int i = 0; i < count; ++i) {
        // 0: the block was full for a while, and the record is still this tool's to send.
        while (ipcCommand(std::to_string(i).c_str(), target) == 0) {
            if (!IsWindow(target)) {
                return 1;
            }
        }
    }
    std::printf("sent\n");
    return 0;
}

}  // namespace
}  // namespace juntora::test

int main(int argc, char** argv) {
    const std::string role = argc > 2 ? argv[1] : "";
    if (role == "receive") {
        return juntora::test::receive(std::atoi(argv[2]));
    }
    return juntora::test::send(static_cast<juntora::HWND>(std::stoul(argv[2], nullptr, 16)),
                               std::atoi(argv[3]));
}
