#include "platform/files/shell.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/files/CaseFolding.h"
#include "platform/files/FullPath.h"
#include "platform/files/HostPath.h"
#include "platform/kernel/CommandLine.h"
#include "platform/kernel/ProgramSearch.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

/// Whether a name and a colon stand in front, which are no drive.
bool hasScheme(std::string_view address) {
    const auto isLetter = [](char c) {
        return files::foldCase(c) >= 'a' && files::foldCase(c) <= 'z';
    };
    const std::size_t colon = address.find(':');
    return colon != std::string_view::npos && colon >= 2 && isLetter(address.front()) &&
           std::all_of(address.begin(), address.begin() + colon, [isLetter](char c) {
               return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
           });
}

}  // namespace

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
    const auto failure = [](DWORD error) { return error < STARTED ? static_cast<int>(error) : 0; };
    std::string page = file;
    if (!hasScheme(page)) {
        // Absolute: so it begins with a slash, and stays what it is in another folder.
        const files::Located place = files::locate(page.empty() ? page : files::fullPath(page));
        if (place.error != 0) {
            return failure(place.error);
        }
        page = place.path;
    }
    const std::string viewer = kernel::programOnPath("xdg-open");
    if (viewer.empty()) {
        return failure(ERROR_FILE_NOT_FOUND);
    }
    const STARTUPINFOA quiet{STARTF_WITHOUTSTREAMS, 0};
    PROCESS_INFORMATION process{};
    const std::string line = kernel::joinCommandLine({viewer, page});
    if (!CreateProcessA(line.c_str(), folder, &quiet, &process)) {
        return failure(GetLastError());
    }
    CloseHandle(process.hProcess);
    return STARTED;
}

}  // namespace juntora
