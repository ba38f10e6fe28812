#include "platform/files/LockedFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <thread>

#include "platform/files/DriveLinks.h"
#include "platform/files/HostPath.h"
#include "platform/files/NewFile.h"
#include "platform/files/transfer.h"
#include "platform/kernel/SystemError.h"
#include "platform/messages.h"

namespace juntora::files {

LockedFile::LockedFile(const char* path, bool canMake) : m_error(open(path, canMake)) {}

LockedFile::~LockedFile() {
    if (m_file >= 0) {
        close(m_file);
    }
}

DWORD LockedFile::open(const char* name, bool canMake) {
    constexpr mode_t WHAT_THE_USER_ALLOWS = 0666;
    for (;;) {
        const Located place = locate(name);
        const bool isNew = place.error == ERROR_FILE_NOT_FOUND;
        if (place.error != 0 && !(isNew && canMake)) {
            return place.error;
        }
        m_path = place.path;
        const int flags = O_RDWR | O_NONBLOCK | O_CLOEXEC | (isNew ? O_CREAT : 0);
        m_file = ::open(m_path.c_str(), flags, WHAT_THE_USER_ALLOWS);
        if (m_file < 0) {
            return kernel::errorOf(errno);
        }
        if (const DWORD error = lock()) {
            return error;
        }
        const std::string path = resolved(m_path);
        if (path.empty() && errno != ENOENT) {
            return kernel::errorOf(errno);
        }
        if (isAt(path)) {
            m_path = path;
            return S_ISREG(m_state.st_mode) ? ERROR_SUCCESS : ERROR_ACCESS_DENIED;
        }
        close(m_file);
        m_file = -1;
    }
}

/// The kernel would wait for ever behind a holder that is stopped.
DWORD LockedFile::lock() const {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::microseconds FIRST_SLEEP{50};
    constexpr std::chrono::microseconds LONGEST_SLEEP{2'000};
    const auto deadline = Clock::now() + PATIENCE;
    auto sleep = FIRST_SLEEP;
    while (flock(m_file, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) {
            continue;
        }
        if (errno != EWOULDBLOCK) {
            return kernel::errorOf(errno);
        }
        if (Clock::now() >= deadline) {
            return ERROR_LOCK_FAILED;
        }
        std::this_thread::sleep_for(sleep);
        sleep = std::min(2 * sleep, LONGEST_SLEEP);
    }
    return ERROR_SUCCESS;
}

/// Whether the file that is open is the one of that path, and none that it has replaced.
bool LockedFile::isAt(const std::string& path) {
    struct stat there {};
    return stat(path.c_str(), &there) == 0 && fstat(m_file, &m_state) == 0 &&
           there.st_dev == m_state.st_dev && there.st_ino == m_state.st_ino;
}

DWORD LockedFile::read(std::size_t limit, std::string* bytes) const {
    bytes->clear();
    const auto size = static_cast<std::size_t>(m_state.st_size);
    if (size > limit) {
        return ERROR_FILE_TOO_LARGE;
    }
    bytes->resize(size);
    return readUpTo(m_file, bytes->data(), size) == size ? ERROR_SUCCESS : ERROR_GEN_FAILURE;
}

DWORD LockedFile::replace(std::string_view bytes) {
    constexpr mode_t RIGHTS = 0777;
    NewFile file(m_path, m_state.st_mode & RIGHTS);
    if (!file.isOpen()) {
        return kernel::errorOf(errno);
    }
    if (m_state.st_uid != geteuid() || m_state.st_gid != getegid()) {
        [[maybe_unused]] const int kept = fchown(file.descriptor(), m_state.st_uid, m_state.st_gid);
    }
    return file.write(bytes) && file.replace() ? ERROR_SUCCESS : kernel::errorOf(errno);
}

}  // namespace juntora::files
