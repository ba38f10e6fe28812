#include "platform/files/status.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/files/DriveLinks.h"
#include "platform/files/FileState.h"
#include "platform/files/HostPath.h"
#include "platform/files/ModuleFile.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

using files::Located;

bool fail(DWORD error) {
    SetLastError(error);
    return false;
}

bool failBySystem() { return fail(kernel::errorOf(errno)); }

FileKind kindOf(const struct statx& state) {
    if (S_ISREG(state.stx_mode)) {
        return FileKind::REGULAR;
    }
    return S_ISDIR(state.stx_mode) ? FileKind::DIRECTORY : FileKind::OTHER;
}

std::string_view lastName(std::string_view path) {
    path = path.substr(0, path.find_last_not_of(files::SEPARATORS) + 1);
    return path.substr(path.find_last_of(files::SEPARATORS) + 1);
}

/// Where something new is to be made; empty, with the error set, where that can't be.
std::string newPath(const char* path) {
    const Located place = files::locate(path);
    if (place.error == ERROR_FILE_NOT_FOUND) {
        return place.path;
    }
    SetLastError(place.error == 0 ? ERROR_ALREADY_EXISTS : place.error);
    return "";
}

/// The length of what was written; the capacity that it needs, NUL included, if it does not fit.
DWORD give(std::string_view text, char* buffer, DWORD capacity) {
    if (text.size() >= capacity) {
        return static_cast<DWORD>(text.size() + 1);
    }
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return static_cast<DWORD>(text.size());
}

}  // namespace

bool ReadFileStatus(const char* path, FileStatus* status) {
    const Located file = files::locate(path);
    if (file.error != 0) {
        return fail(file.error);
    }
    if (files::endsInSeparator(path) && !file.isRoot) {
        return fail(ERROR_FILE_NOT_FOUND);
    }
    const struct statx& state = file.state;
    const bool hasBirth = (state.stx_mask & STATX_BTIME) != 0;
    *status = {kindOf(state), static_cast<std::int64_t>(state.stx_size), state.stx_atime.tv_sec,
               state.stx_mtime.tv_sec, hasBirth ? state.stx_btime.tv_sec : state.stx_ctime.tv_sec};
    return true;
}

DWORD GetFileAttributesA(const char* path) {
    const Located file = files::locate(path);
    if (file.error != 0) {
        SetLastError(file.error);
        return INVALID_FILE_ATTRIBUTES;
    }
    return files::attributesOf(file.state, lastName(file.path));
}

bool SetFileTimes(const char* path, std::int64_t accessTime, std::int64_t modifyTime) {
    const Located file = files::locate(path);
    if (file.error != 0) {
        return fail(file.error);
    }
    const timespec times[] = {{accessTime, 0}, {modifyTime, 0}};
    return utimensat(AT_FDCWD, file.path.c_str(), times, 0) == 0 || failBySystem();
}

bool MakeDirectory(const char* path) {
    constexpr mode_t WHAT_THE_USER_ALLOWS = 0777;
    const std::string place = newPath(path);
    return !place.empty() && (mkdir(place.c_str(), WHAT_THE_USER_ALLOWS) == 0 || failBySystem());
}

bool MakeEmptyFile(const char* path) {
    constexpr mode_t WHAT_THE_USER_ALLOWS = 0666;
    const std::string place = newPath(path);
    if (place.empty()) {
        return false;
    }
    const int file =
        open(place.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, WHAT_THE_USER_ALLOWS);
    return file < 0 || close(file) != 0 ? failBySystem() : true;
}

DWORD GetShortPathNameA(const char* path, char* buffer, DWORD capacity) {
    const DWORD error = files::locate(path).error;
    if (error != 0) {
        SetLastError(error);
        return 0;
    }
    return give(path, buffer, capacity);
}

DWORD GetLongPathNameA(const char* path, char* buffer, DWORD capacity) {
    const Located file = files::locateModule(path);
    if (file.error != 0) {
        SetLastError(file.error);
        return 0;
    }
    const std::string own = files::resolved(file.path);
    if (own.empty()) {
        failBySystem();
        return 0;
    }
    return give(own, buffer, capacity);
}

}  // namespace juntora
