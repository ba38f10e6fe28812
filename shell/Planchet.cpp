#include "shell/Planchet.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "framework/CWinApp.h"
#include "framework/CWnd.h"
#include "platform/dialog/dialog.h"
#include "platform/files/paths.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char PLANCHET_NAME[] = "TarvexVoltaraPlanchetFindWnd16.6.0";
constexpr char PLANCHET_TITLE[] = "Voltara Planchet Manager";
constexpr char PLANCHET_PROGRAM[] = "Planchet.exe";

/// What a command line may hold, NUL included.
constexpr std::size_t COMMAND_SIZE = 1040;

/// The path of a program in the hub's own folder.
std::string besideHub(const char* program) {
    const char* self = ProgramArgument(0);
    char drive[3] = "";
    char directory[256] = "";
    if (self) {
        SplitPath(self, drive, directory, nullptr, nullptr);
    }
    return std::string(drive) + directory + program;
}

/// The command with the hub's arguments behind it, or without any of them when they don't fit.
std::string withArguments(const std::string& program) {
    const CWinApp* application = AfxGetApp();
    const char* line = application ? application->m_lpCmdLine : nullptr;
    if (!line || program.size() + std::strlen(line) + 2 > COMMAND_SIZE) {
        return program;
    }
    return program + " " + line;
}

bool start(const std::string& program) {
    const STARTUPINFOA startup{STARTF_USESHOWWINDOW, SW_SHOWMINNOACTIVE};
    PROCESS_INFORMATION information{};
    if (!CreateProcessA(withArguments(program).c_str(), nullptr, &startup, &information)) {
        return false;
    }
    CloseHandle(information.hProcess);
    return true;
}

void reportFailure(DWORD error) {
    char title[32];
    std::snprintf(title, sizeof title, "Error %x", error);
    const CWnd* owner = AfxGetMainWnd();
    MessageBoxA(owner ? owner->m_hWnd : 0, "Cannot start Planchet Manager.", title,
                MB_TASKMODAL | MB_ICONWARNING);
}

}  // namespace

int IsPlanchetRunning() {
    const HANDLE mutex = CreateMutexA(false, PLANCHET_NAME);
    if (!mutex) {
        return FindWindowA(PLANCHET_NAME, PLANCHET_TITLE) != 0 ? 1 : 0;
    }
    const bool isThere = GetLastError() == ERROR_ALREADY_EXISTS;
    CloseHandle(mutex);
    return isThere ? 1 : 0;
}

int StartPlanchet(int report) {
    if (IsPlanchetRunning() || start(besideHub(PLANCHET_PROGRAM)) || start(PLANCHET_PROGRAM)) {
        return 1;
    }
    const DWORD error = GetLastError();
    if (report) {
        reportFailure(error);
    }
    return 0;
}

}  // namespace juntora
