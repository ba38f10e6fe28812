#include "platform/files/transfer.h"

#include <unistd.h>

#include <cerrno>

namespace juntora::files {

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

std::size_t readUpTo(int file, char* data, std::size_t bytes) {
    std::size_t got = 0;
    while (got < bytes) {
        const ssize_t count = read(file, data + got, bytes - got);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        got += static_cast<std::size_t>(count);
    }
    return got;
}

}  // namespace juntora::files
