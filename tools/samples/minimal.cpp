// The least that makes a tool: it signs on, prints each record that reaches it, and leaves when it
// is closed.
#include <cstdio>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/printable.h"

using namespace juntora;

static LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (ipcReceive(message, wParam, lParam, &record, &opcode)) {
        std::printf("%d from %x: %s\n", opcode, record->sender,
                    PrintableText(record->text).c_str());
        ipcRelease(record);
        return 1;
    }
    if (message == WM_DESTROY) {
        PostQuitMessage(0);
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

int main() {
    const WNDCLASSA windowClass{0, handle, 0, 0, 0, "Minimal"};
    RegisterClassA(&windowClass);
    const HWND window = CreateWindowExA(0, "Minimal", "", 0, 0, 0, 0, 0, 0, 0);
    char name[60] = "";
    int capacity = sizeof name;
    if (ipcAttach("Minimal", window, name, &capacity, 1) == 0) {
        return 1;
    }
    std::printf("signed on as %s\n", name);
    for (MSG message; GetMessageA(&message, 0, 0, 0) > 0;) {
        DispatchMessageA(&message);
    }
    ipcDetach();
}
