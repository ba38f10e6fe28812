#include "platform/files/wholeFile.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/kernel/CommandLine.h"

namespace juntora {
namespace {

using kernel::hostPath;

}  // namespace

bool WriteWholeFile(const char* path, const void* data, std::size_t bytes) {
    const int file =
        open(hostPath(path).c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK | O_CLOEXEC, 0600);
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
            close(file);
            return false;
        }
        at += written;
        bytes -= static_cast<std::size_t>(written);
    }
    return close(file) == 0;
}

long ReadFileStart(const char* path, void* data, std::size_t bytes) {
    const int file = open(hostPath(path).c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) {
        return -1;
    }
    struct stat state {};
    if (fstat(file, &state) != 0 || !S_ISREG(state.st_mode)) {
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

bool DeleteFileA(const char* path) { return unlink(hostPath(path).c_str()) == 0; }

}  // namespace juntora
