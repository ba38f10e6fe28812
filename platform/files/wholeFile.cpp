#include "platform/files/wholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/files/HostPath.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

bool failBySystem() {
    SetLastError(kernel::errorOf(errno));
    return false;
}

/// Runs `operation` on the exact spelling; only if that is not there, which is rare, on what the
/// folders have instead, or on what can be made. -1 with the error set on failure.
template <typename Operation>
int onSpelling(const char* path, bool canMake, Operation operation) {
    const std::string exact = files::hostPath(path);
    int result = operation(exact, false);
    if (result >= 0 || (errno != ENOENT && errno != ENOTDIR)) {
        return result >= 0 || failBySystem() ? result : -1;
    }
    const files::Located place = files::locate(path);
    const bool isNew = canMake && place.error == ERROR_FILE_NOT_FOUND;
    if (place.error != 0 && !isNew) {
        SetLastError(place.error);
        return -1;
    }
    result = operation(place.path, isNew);
    return result >= 0 || failBySystem() ? result : -1;
}

/// Opens for writing with the further flags `how`, and writes all.
bool writeTo(const char* path, int how, const void* data, std::size_t bytes) {
    const int file = onSpelling(path, true, [how](const std::string& spelling, bool isNew) {
        const int flags = O_WRONLY | O_NONBLOCK | O_CLOEXEC | how | (isNew ? O_CREAT : 0);
        return open(spelling.c_str(), flags, 0600);
    });
    if (file < 0) {
        return false;
    }
    const char* at = static_cast<const char*>(data);
    while (bytes > 0) {
        const ssize_t written = write(file, at, bytes);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            failBySystem();
            close(file);
            return false;
        }
        at += written;
        bytes -= static_cast<std::size_t>(written);
    }
    return close(file) == 0 || failBySystem();
}

}  // namespace

bool WriteWholeFile(const char* path, const void* data, std::size_t bytes) {
    return writeTo(path, O_TRUNC, data, bytes);
}

bool AppendToFile(const char* path, const void* data, std::size_t bytes) {
    return writeTo(path, O_APPEND, data, bytes);
}

long ReadFileStart(const char* path, void* data, std::size_t bytes) {
    const int file = onSpelling(path, false, [](const std::string& spelling, bool) {
        return open(spelling.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    });
    if (file < 0) {
        return -1;
    }
    struct stat state {};
    if (fstat(file, &state) != 0 || !S_ISREG(state.st_mode)) {
        SetLastError(ERROR_ACCESS_DENIED);
        close(file);
        return -1;
    }
    std::size_t got = 0;
    while (got < bytes) {
        const ssize_t count = read(file, static_cast<char*>(data) + got, bytes - got);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        got += static_cast<std::size_t>(count);
    }
    close(file);
    return static_cast<long>(got);
}

bool DeleteFileA(const char* path) {
    return onSpelling(path, false, [](const std::string& spelling, bool) {
               return unlink(spelling.c_str());
           }) == 0;
}

}  // namespace juntora
