#include "platform/files/paths.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "platform/files/FullPath.h"
#include "platform/files/HostPath.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

constexpr std::size_t FIELD = 256;

void put(char* field, std::string_view text) {
    if (field != nullptr) {
        const std::size_t length = std::min(text.size(), FIELD - 1);
        std::copy_n(text.begin(), length, field);
        field[length] = '\0';
    }
}

}  // namespace

void SplitPath(const char* path, char* drive, char* directory, char* name, char* extension) {
    std::string_view rest(path);
    const std::size_t driveLength = files::hasDrive(rest) ? 2 : 0;
    put(drive, rest.substr(0, driveLength));
    rest.remove_prefix(driveLength);
    const std::size_t separator = rest.find_last_of(files::SEPARATORS);
    const std::size_t start = separator == std::string_view::npos ? 0 : separator + 1;
    put(directory, rest.substr(0, start));
    rest.remove_prefix(start);
    const std::size_t dot = std::min(rest.rfind('.'), rest.size());
    put(name, rest.substr(0, dot));
    put(extension, rest.substr(dot));
}

DWORD GetFullPathNameA(const char* path, DWORD capacity, char* buffer) {
    if (path == nullptr || *path == '\0') {
        SetLastError(ERROR_INVALID_NAME);
        return 0;
    }
    const std::string full = files::fullPath(path);
    if (full.empty()) {
        SetLastError(kernel::errorOf(errno));
        return 0;
    }
    if (full.size() >= capacity) {
        return static_cast<DWORD>(full.size() + 1);
    }
    std::memcpy(buffer, full.c_str(), full.size() + 1);
    return static_cast<DWORD>(full.size());
}

char* CurrentDirectory(char* buffer, int capacity) {
    const std::string folder = files::currentFolder();
    if (folder.empty() || capacity <= 0 || folder.size() >= static_cast<std::size_t>(capacity)) {
        return nullptr;
    }
    std::memcpy(buffer, folder.c_str(), folder.size() + 1);
    return buffer;
}

BOOL SetCurrentDirectoryA(const char* path) {
    const files::Located folder = files::locate(path);
    if (folder.error != 0) {
        SetLastError(folder.error);
        return 0;
    }
    if (chdir(folder.path.c_str()) != 0) {
        SetLastError(kernel::errorOf(errno));
        return 0;
    }
    return 1;
}

short GetFileTitleA(const char* file, char* title, WORD capacity) {
    constexpr short NO_FILE = -1;
    const std::string_view path(file == nullptr ? "" : file);
    if (path.empty() || path.find_first_of("*[]") != std::string_view::npos ||
        files::endsInSeparator(path) || path.back() == ':') {
        return NO_FILE;
    }
    const std::string name(path.substr(path.find_last_of("/\\:") + 1));
    if (name.size() >= static_cast<std::size_t>(std::numeric_limits<short>::max())) {
        return NO_FILE;
    }
    if (name.size() >= capacity) {
        return static_cast<short>(name.size() + 1);
    }
    std::memcpy(title, name.c_str(), name.size() + 1);
    return 0;
}

}  // namespace juntora
