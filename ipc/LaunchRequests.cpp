// Having the hub start a tool.
#include "ipc/TextBuilder.h"
#include "ipc/ipc.h"
#include "platform/files/paths.h"

namespace juntora {
namespace {

constexpr int DIRECTORY_CAPACITY = IPC_TEXT_LIMIT;
constexpr int REPLY_CAPACITY = 1040;
constexpr int FAILED = 1;

enum LaunchStatus { FOUND = 0, NOT_LAUNCHED = 1, NOT_FOUND = 2 };

int launch(int opcode, const char* program, const char* arguments, int show, int withoutDirectory) {
    char directory[DIRECTORY_CAPACITY];
    if (CurrentDirectory(directory, sizeof directory) == nullptr) {
        return withoutDirectory;
    }
    TextBuilder<IPC_TEXT_LIMIT> text;  // The hub reads no text from a file.
    text.addDecimal(show).add(" ").addQuoted(directory).add(" ").add(program).add(" ");
    text.add(arguments != nullptr ? arguments : "");
    if (text.get() == nullptr) {
        return FAILED;
    }
    char unread[REPLY_CAPACITY];
    int capacity = sizeof unread;
    return ipcSend(opcode, text.get(), 0, unread, &capacity);
}

}  // namespace

int ipcLaunch(const char* program, const char* arguments, int, int show) {
    return launch(IPC_LAUNCH, program, arguments, show, 0);
}

int ipcLaunchWait(const char* program, const char* arguments, int, int show) {
    return launch(IPC_LAUNCH_WAIT, program, arguments, show, FAILED);
}

HWND ipcLaunchAndFind(const char* program, const char* arguments, int reserved, int show,
                      const char* name, int* status) {
    *status = NOT_LAUNCHED;
    if (ipcLaunchWait(program, arguments, reserved, show) != 0) {
        return 0;
    }
    const HWND window = ipcFindApp(name);
    *status = window != 0 ? FOUND : NOT_FOUND;
    return window;
}

}  // namespace juntora
