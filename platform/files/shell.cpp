#include "platform/files/shell.h"

#include <cstdio>
#include <string>

#include "platform/files/HostPath.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {

bool SHGetFileInfoA(const char* path, char* displayName, int capacity) {
    files::Located file = files::locate(path);
    if (file.error != 0 || file.isRoot || capacity <= 0) {
        return false;
    }
    while (file.path.ends_with('/')) {
        file.path.pop_back();
    }
    const std::size_t start = file.path.rfind('/') + 1;
    std::snprintf(displayName, static_cast<std::size_t>(capacity), "%s", file.path.c_str() + start);
    return displayName[0] != '\0';
}

int ShellExecuteA(HWND, const char*, const char* file, const char*, const char* folder, int) {
    constexpr int STARTED = 33;
    const std::string path = files::hostPath(file);
    if (path.empty() || path.find('"') != std::string::npos) {
        return static_cast<int>(ERROR_FILE_NOT_FOUND);
    }
    PROCESS_INFORMATION viewer{};
    if (!CreateProcessA(("xdg-open \"" + path + "\"").c_str(), folder, nullptr, &viewer)) {
        const DWORD error = GetLastError();
        return error < STARTED ? static_cast<int>(error) : 0;
    }
    CloseHandle(viewer.hProcess);
    return STARTED;
}

}  // namespace juntora
