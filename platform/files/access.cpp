#include "platform/files/access.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/HostPath.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

constexpr mode_t ALL_RIGHTS = 07777;
constexpr mode_t ALL_WRITE = S_IWUSR | S_IWGRP | S_IWOTH;

bool fail(DWORD error) {
    SetLastError(error);
    return false;
}

bool failBySystem() { return fail(kernel::errorOf(errno)); }

/// `modeFor` makes a new mode of the present one.
template <typename ModeFor>
bool changeMode(const char* path, ModeFor modeFor) {
    const files::Located file = files::locate(path);
    if (file.error != 0) {
        return fail(file.error);
    }
    const mode_t mode = modeFor(file.state.stx_mode);
    return (file.state.stx_mode & ALL_RIGHTS) == mode || chmod(file.path.c_str(), mode) == 0 ||
           failBySystem();
}

}  // namespace

bool CheckAccess(const char* path, int mode) {
    const files::Located file = files::locate(path);
    if (file.error != 0) {
        return fail(file.error);
    }
    static_assert(ACCESS_EXISTS == F_OK && ACCESS_WRITE == W_OK && ACCESS_READ == R_OK);
    return eaccess(file.path.c_str(), mode) == 0 || failBySystem();
}

bool ChangeMode(const char* path, int mode) {
    return changeMode(path, [mode](mode_t present) {
        const bool canEnter = S_ISDIR(present) && (mode & S_IRUSR) != 0;
        return (static_cast<mode_t>(mode) & MODE_OWNER_READ_WRITE) | (canEnter ? S_IXUSR : 0);
    });
}

bool SetFileAttributesA(const char* path, DWORD attributes) {
    return changeMode(path, [attributes](mode_t present) {
        const mode_t rights = present & ALL_RIGHTS;
        return (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? rights & ~ALL_WRITE : rights | S_IWUSR;
    });
}

bool IsOwnFolder(const char* path) {
    const files::Located folder = files::locate(path);
    if (folder.error != 0) {
        return fail(folder.error);
    }
    struct stat state {};
    if (lstat(folder.path.c_str(), &state) != 0) {
        return failBySystem();
    }
    const bool isOwn = S_ISDIR(state.st_mode) && state.st_uid == geteuid() &&
                       (state.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    return isOwn || fail(ERROR_ACCESS_DENIED);
}

}  // namespace juntora
