#include "platform/files/temporaryFiles.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace juntora {
namespace {

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

UINT GetTempFileNameA(const char* folder, const char* prefix, char* buffer, const char* extension) {
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
            std::snprintf(path, sizeof path, "%s%s%08X%s", base.c_str(), prefix, number, extension);
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

}  // namespace juntora
