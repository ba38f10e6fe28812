#include "platform/files/wholeFile.h"

#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/files/DriveLinks.h"
#include "platform/files/HostPath.h"
#include "platform/files/NewFile.h"
#include "platform/files/transfer.h"
#include "platform/kernel/NoPipeSignal.h"
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

/// Opens for writing with the further flags `how`. -1 with the error set.
int openToWrite(const char* path, int how) {
    return onSpelling(path, true, [how](const std::string& spelling, bool isNew) {
        const int flags = O_WRONLY | O_NONBLOCK | O_CLOEXEC | how | (isNew ? O_CREAT : 0);
        return open(spelling.c_str(), flags, 0600);
    });
}

/// Writes all and closes.
bool writeAndClose(int file, const void* data, std::size_t bytes) {
    if (!files::writeAll(file, {static_cast<const char*>(data), bytes})) {
        failBySystem();
        close(file);
        return false;
    }
    return close(file) == 0 || failBySystem();
}

/// Opens a regular file for reading. -1 with the error set.
int openRegular(const char* path, struct stat* state) {
    const int file = onSpelling(path, false, [](const std::string& spelling, bool) {
        return open(spelling.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    });
    if (file >= 0 && (fstat(file, state) != 0 || !S_ISREG(state->st_mode))) {
        SetLastError(ERROR_ACCESS_DENIED);
        close(file);
        return -1;
    }
    return file;
}

bool copyAll(int source, const files::NewFile& copy) {
    constexpr std::size_t PIECE = std::size_t{1} << 30;
    for (;;) {
        const ssize_t count = sendfile(copy.descriptor(), source, nullptr, PIECE);
        if (count == 0) {
            return true;
        }
        if (count < 0 && errno != EINTR) {
            return false;
        }
    }
}

}  // namespace

bool WriteWholeFile(const char* path, const void* data, std::size_t bytes) {
    const int file = openToWrite(path, O_TRUNC);
    return file >= 0 && writeAndClose(file, data, bytes);
}

bool ReplaceWholeFile(const char* path, const void* data, std::size_t bytes) {
    constexpr mode_t READABLE_BY_ALL = 0644;
    const std::filesystem::path place = files::locate(path).path;
    if (place.empty()) {
        SetLastError(ERROR_PATH_NOT_FOUND);
        return false;
    }
    std::error_code ignored;
    std::filesystem::create_directories(place.parent_path(), ignored);
    files::NewFile file(place, READABLE_BY_ALL);
    return (file.isOpen() && file.write({static_cast<const char*>(data), bytes}) &&
            file.replace()) ||
           failBySystem();
}

AppendResult AppendToFile(const char* path, const void* data, std::size_t bytes) {
    const int file = openToWrite(path, O_APPEND);
    if (file < 0) {
        return AppendResult::NOT_OPENED;
    }
    const kernel::NoPipeSignal noSignal;
    return writeAndClose(file, data, bytes) ? AppendResult::DONE : AppendResult::NOT_WRITTEN;
}

long ReadFileStart(const char* path, void* data, std::size_t bytes) {
    struct stat state {};
    const int file = openRegular(path, &state);
    if (file < 0) {
        return -1;
    }
    const std::size_t got = files::readUpTo(file, static_cast<char*>(data), bytes);
    close(file);
    return static_cast<long>(got);
}

bool ReadWholeFile(const char* path, std::size_t limit, std::string* bytes) {
    bytes->clear();
    struct stat state {};
    const int file = openRegular(path, &state);
    if (file < 0) {
        return false;
    }
    const auto size = static_cast<std::size_t>(state.st_size);
    if (size > limit) {
        SetLastError(ERROR_FILE_TOO_LARGE);
    } else {
        bytes->resize(size);
        bytes->resize(files::readUpTo(file, bytes->data(), size));
    }
    close(file);
    return size <= limit;
}

BOOL CopyFileA(const char* from, const char* to, BOOL failIfExists) {
    constexpr mode_t NO_WRITE_FOR_OTHERS = 0755;
    const files::Located place = files::locate(to);
    const bool isThere = place.error == ERROR_SUCCESS;
    if (!isThere && place.error != ERROR_FILE_NOT_FOUND) {
        SetLastError(place.error);
        return 0;
    }
    if (isThere && failIfExists) {
        SetLastError(ERROR_ALREADY_EXISTS);
        return 0;
    }
    struct stat state {};
    const int source = openRegular(from, &state);
    if (source < 0) {
        return 0;
    }
    files::NewFile copy(isThere ? files::resolved(place.path) : place.path,
                        state.st_mode & NO_WRITE_FOR_OTHERS);
    const bool isCopied =
        copy.isOpen() && copyAll(source, copy) && (failIfExists ? copy.place() : copy.replace());
    const int error = errno;
    close(source);
    errno = error;
    return isCopied || failBySystem();
}

bool DeleteFileA(const char* path) {
    return onSpelling(path, false, [](const std::string& spelling, bool) {
               return unlink(spelling.c_str());
           }) == 0;
}

}  // namespace juntora
