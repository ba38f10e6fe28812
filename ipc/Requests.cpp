// One call for each request but those of files and launches.
#include "ipc/RequestText.h"
#include "ipc/ipc.h"

namespace juntora {
int ipcSetEnv(const char* assignment) {
    RequestText text;
    // 0 would say that the variable has been set.
    return text.add(assignment).get() != nullptr ? sendRequest(IPC_SET_ENV, text) : -1;
}

HWND ipcFindApp(const char* name) {
    RequestText text;
    return static_cast<HWND>(sendRequest(IPC_FIND_APP, text.add(name)));
}

int ipcAppName(HWND window, char* buffer, int* capacity) {
    RequestText text;
    return ipcSend(IPC_APP_NAME, text.addHex(window).get(), 0, buffer, capacity) > 0 ? 1 : 0;
}

int ipcWatchName(const char* name) {
    RequestText text;
    return sendRequest(IPC_WATCH, text.add("a").add(name));
}

int ipcWatchId(HWND window) {
    RequestText text;
    return sendRequest(IPC_WATCH, text.add("x").addHex(window));
}

int ipcCommand(const char* text, HWND target) { return ipcPost(IPC_COMMAND, text, target); }

int ipcIsAlive(HWND window) {
    RequestText text;
    return sendRequest(IPC_IS_ALIVE, text.addHex(window));
}

int ipcStatus(HWND target, const char* text, int code) {
    RequestText request;
    const char* whole = request.add(text).add(" ").addDecimal(code).get();
    return whole != nullptr ? ipcPost(IPC_STATUS, whole, target) : 0;
}

}  // namespace juntora
