// Starts tools for tools, and keeps the environment that these inherit.
#include <cstdio>
#include <string>

#include "hub/LaunchRequest.h"
#include "hub/RecordText.h"
#include "hub/ipcDes.h"
#include "platform/files/paths.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

/// The platform's number for a file that is not there as well: the two look alike to the sender.
constexpr int UNUSABLE_TEXT = 2;

constexpr DWORD LONGEST_WAIT_MILLISECONDS = 30'000;

/// What the new tool finds in its environment: the window of the one that asked for it, to which it
/// sends a greeting once it has signed on.
void tellParent(HWND sender) {
    char assignment[24];
    std::snprintf(assignment, sizeof assignment, "PARENT=%x", sender);
    PutEnvironment(assignment);
}

int launchProcess(int show, const std::string& command, HWND sender, bool mustWait) {
    const STARTUPINFOA startup{STARTF_USESHOWWINDOW,
                               static_cast<WORD>(show ? SW_SHOWNORMAL : SW_SHOWMINIMIZED)};
    tellParent(sender);
    PROCESS_INFORMATION process{};
    if (!CreateProcessA(command.c_str(), nullptr, &startup, &process)) {
        return static_cast<int>(GetLastError());
    }
    if (mustWait) {
        WaitForInputIdle(process.hProcess, LONGEST_WAIT_MILLISECONDS);
    }
    CloseHandle(process.hProcess);
    return 0;
}

int launch(const IpcMessage& record, bool mustWait) {
    const RecordText text(record);
    const LaunchRequest request(text.view());
    if (!request.isUsable()) {
        return UNUSABLE_TEXT;
    }
    // Where it can't be entered the new tool starts in the folder of the launch before.
    SetCurrentDirectoryA(request.directory.c_str());
    return launchProcess(request.show, request.command, record.sender, mustWait);
}

}  // namespace

int ipcDes::onLaunch(IpcMessage* record) { return launch(*record, false); }

int ipcDes::onLaunchWait(IpcMessage* record) { return launch(*record, true); }

int ipcDes::onSetEnv(IpcMessage* record) { return PutEnvironment(RecordText(*record).c_str()); }

}  // namespace juntora
