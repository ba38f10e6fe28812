// Starting the hub from a tool that has found none.
#include <cstdio>
#include <cstring>
#include <string>

#include "ipc/ipc.h"
#include "messages/messageFamily.h"
#include "platform/desktop/message.h"
#include "platform/dialog/dialog.h"
#include "platform/files/paths.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char HUB_PROGRAM[] = "Juntora.exe";
constexpr std::size_t COMMAND_LINE_LIMIT = 1040;
constexpr DWORD IDLE_WAIT = 5'000;
constexpr unsigned long HUB_NOT_STARTED = 1821;

/// The command line for the hub in `folder`: it gets this program's arguments, up to the last that
/// fits whole.
std::string commandLine(const std::string& folder) {
    std::string line = folder + HUB_PROGRAM + " ";
    for (int i = 1; i < ProgramArgumentCount(); ++i) {
        const char* argument = ProgramArgument(i);
        if (line.size() + std::strlen(argument) + 2 > COMMAND_LINE_LIMIT) {
            break;
        }
        line.append(argument).append(" ");
    }
    return line;
}

bool start(const std::string& line) {
    const STARTUPINFOA hidden{STARTF_USESHOWWINDOW, SW_HIDE};
    PROCESS_INFORMATION hub{};
    if (!CreateProcessA(line.c_str(), nullptr, &hidden, &hub)) {
        return false;
    }
    WaitForInputIdle(hub.hProcess, IDLE_WAIT);
    CloseHandle(hub.hProcess);
    return true;
}

std::string ownFolder() {
    const char* program = ProgramArgument(0);
    if (program == nullptr) {
        return "";
    }
    char drive[3];
    char directory[256];
    SplitPath(program, drive, directory, nullptr, nullptr);
    return std::string(drive) + directory;
}

void showStartFailure(DWORD error) {
    char caption[32];
    std::snprintf(caption, sizeof caption, "Error %x", error);
    std::string text;
    getMessageText(&text, "TVCOMMN", HUB_NOT_STARTED);
    MessageBoxA(0, text.c_str(), caption, MB_TASKMODAL | MB_ICONWARNING);
}

}  // namespace

int ipcStartHub(int showErrors) {
    if (ipcFindHub() || start(commandLine(ownFolder())) || start(commandLine(""))) {
        return 1;
    }
    if (showErrors != 0) {
        showStartFailure(GetLastError());
    }
    return 0;
}

}  // namespace juntora
