// Coming to the hub and leaving it.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "ipc/PostedRecords.h"
#include "ipc/TextBuilder.h"
#include "ipc/TextScan.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/process.h"

namespace juntora {

HWND ipcSelfId = IPC_NO_IDENTITY;
HWND ipcHubWindow = 0;
UINT ipcMessageId = 0;
HWND ipcParentId = 0;

namespace {

constexpr int WAIT_PASSES = 50;
constexpr DWORD WAIT_STEP = 600;
constexpr char PARENT_VARIABLE[] = "PARENT";

/// Dispatches one message at most. False once this thread is to quit.
bool pumpOnce() {
    MSG message;
    if (!PeekMessageA(&message, 0, 0, 0, PM_REMOVE)) {
        return true;
    }
    if (message.message == WM_QUIT) {
        PostQuitMessage(1);
        return false;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
    return true;
}

bool waitForHub() {
    for (int pass = 0; pass < WAIT_PASSES; ++pass) {
        if (!pumpOnce()) {
            return false;
        }
        if (ipcFindHub()) {
            return true;
        }
        Sleep(WAIT_STEP);
    }
    return false;
}

int openBlock() {
    ipcMessageId = RegisterWindowMessageA(IPC_MESSAGE_NAME);
    return ipcMemOpen();
}

void attachHub(HWND window) {
    if (openBlock()) {
        ipcHubWindow = window;
    }
}

/// Signs on, and takes the id and the unique name from the hub's answer.
bool signOn(const char* name, char* nameBuffer, int* capacity) {
    TextBuilder<IPC_TEXT_LIMIT> text;
    text.add(name != nullptr ? name : "").add(" ").addDecimal(IPC_VERSION);
    char answer[IPC_TEXT_LIMIT];
    *capacity = std::min(*capacity, IPC_TEXT_LIMIT);
    if (text.get() == nullptr || !ipcSend(IPC_SIGN_ON, text.get(), 0, answer, capacity) ||
        *capacity <= 0) {
        return false;
    }
    const auto bytes = static_cast<std::size_t>(*capacity);
    // An answer that was cut off has no NUL; the name then ends where the answer does.
    TextScan scan({answer, strnlen(answer, bytes)});
    HWND window = 0;
    if (!scan.window(&window) || window == 0) {
        return false;
    }
    ipcSelfId = window;
    std::string_view unique("");
    scan.word(&unique);
    std::memcpy(nameBuffer, unique.data(), unique.size());
    nameBuffer[unique.size()] = '\0';
    return true;
}

/// Greets the tool that had this one launched, and keeps what this one launches from greeting it.
void greetParent() {
    const char* value = GetEnvironment(PARENT_VARIABLE);
    if (value == nullptr) {
        return;
    }
    ipcParentId = scanWindow(value);
    if (ipcParentId != 0) {
        ipcPost(IPC_CHILD_HELLO, nullptr, ipcParentId);
    }
    PutEnvironment("PARENT=");
}

/// Gives back the slots of the records that nobody will read any more.
void dropPostedRecords() {
    IpcMessage* record = nullptr;
    int opcode = 0;
    while (takePostedRecord(&record, &opcode)) {
        ipcRelease(record);
    }
}

}  // namespace

int ipcFindHub() {
    ipcHubWindow = FindWindowA(HUB_WINDOW_CLASS, HUB_WINDOW_TITLE);
    return ipcHubWindow != 0 ? 1 : 0;
}

HWND ipcAttach(const char* name, HWND window, char* nameBuffer, int* capacity, int showErrors) {
    if (ipcSelfId == 0) {
        attachHub(window);
        return 0;
    }
    if (window == 0) {
        return 0;  // With that id this process would take itself for the hub.
    }
    ipcSelfId = window;
    if (!ipcFindHub() && (!ipcStartHub(showErrors) || !waitForHub())) {
        return 0;
    }
    if (!openBlock() || !signOn(name, nameBuffer, capacity)) {
        return 0;
    }
    greetParent();
    return ipcSelfId;
}

int ipcObserve(HWND window) {
    if (window == 0 || !ipcFindHub()) {
        return 0;
    }
    ipcSelfId = window;
    return openBlock();
}

int ipcDetach() {
    int result = 0;
    if (ipcHubWindow != 0 && ipcSelfId != 0) {
        char unread[2];
        int capacity = sizeof unread;
        result = ipcSend(IPC_SIGN_OFF, nullptr, 0, unread, &capacity);
        dropPostedRecords();
    }
    ipcMemClose();
    ipcMessageId = 0;
    ipcSelfId = IPC_NO_IDENTITY;
    ipcParentId = 0;
    return result;
}

}  // namespace juntora
