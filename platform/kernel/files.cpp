#include "platform/kernel/files.h"

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

constexpr int NAME_TRIES = 100;
constexpr std::size_t PATH_CAPACITY = 260;

}  // namespace

DWORD GetTempPathA(DWORD capacity, char* buffer) {
    const char* named = std::getenv("TMPDIR");
    std::string folder = named == nullptr || *named == '\0' ? "/tmp" : named;
    if (folder.back() != '/') {
        folder += '/';
    }
    struct stat state {};
    if (folder.size() >= capacity || stat(folder.c_str(), &state) != 0 || !S_ISDIR(state.st_mode)) {
        return 0;
    }
    std::memcpy(buffer, folder.c_str(), folder.size() + 1);
    return static_cast<DWORD>(folder.size());
}

UINT GetTempFileNameA(const char* folder, const char* prefix, char* buffer) {
    std::string base = folder;
    if (!base.empty() && base.back() != '/') {
        base += '/';
    }
    for (int i = 0; i < NAME_TRIES; ++i) {
        std::uint32_t number = 0;
        if (getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number)) {
            return 0;
        }
        char path[PATH_CAPACITY];
        const int length =
            std::snprintf(path, sizeof path, "%s%s%08X.tmp", base.c_str(), prefix, number);
        if (length < 0 || static_cast<std::size_t>(length) >= sizeof path) {
            return 0;
        }
        const int file = open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (file >= 0) {
            close(file);
            std::memcpy(buffer, path, static_cast<std::size_t>(length) + 1);
            return number | 1;
        }
        if (errno != EEXIST) {
            return 0;
        }
    }
    return 0;
}

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
