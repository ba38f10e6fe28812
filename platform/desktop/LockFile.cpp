#include "platform/desktop/LockFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/desktop/Layout.h"

namespace juntora::desktop {
namespace {

constexpr char FILE_NAME[] = "locks";
constexpr off_t OPENING_BYTE = 0;
constexpr int OPENING_TRIES = 10'000;  // of a millisecond each
constexpr timespec A_MILLISECOND{0, 1'000'000};

off_t processByte(std::uint32_t process) { return 1 + static_cast<off_t>(process); }

struct flock range(short type, off_t start, off_t length) {
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = start;
    lock.l_len = length;
    return lock;
}

bool set(int descriptor, short type, off_t start) {
    struct flock lock = range(type, start, 1);
    return fcntl(descriptor, F_OFD_SETLK, &lock) == 0;
}

bool isHeld(int descriptor, off_t start, off_t length) {
    struct flock lock = range(F_WRLCK, start, length);
    return fcntl(descriptor, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace

bool LockFile::enter() {
    for (int i = 0; i < OPENING_TRIES; ++i) {
        if (set(m_descriptor, F_WRLCK, OPENING_BYTE)) {
            return true;
        }
        if (errno != EAGAIN && errno != EACCES && errno != EINTR) {
            return false;
        }
        nanosleep(&A_MILLISECOND, nullptr);
    }
    errno = ETIMEDOUT;
    return false;
}

bool LockFile::openAndEnter(const Folder& folder, Problem* problem) {
    const std::string path = folder.path() + "/" + FILE_NAME;
    for (;;) {
        m_descriptor = openat(folder.descriptor(), FILE_NAME,
                              O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK, 0600);
        if (m_descriptor < 0 || !enter()) {
            *problem = "cannot lock " + path + ": " + std::strerror(errno) +
                       (errno == ETIMEDOUT ? "; a program that is opening the desktop is stuck, "
                                             "end it (fuser tells which)"
                                           : "");
            return false;
        }
        struct stat state {};
        if (fstat(m_descriptor, &state) == 0 && state.st_nlink > 0) {
            return true;
        }
        close();  // The last one out removed it before we had it.
    }
}

void LockFile::exit() { set(m_descriptor, F_UNLCK, OPENING_BYTE); }

bool LockFile::takeProcess(std::uint32_t process) {
    return set(m_descriptor, F_WRLCK, processByte(process));
}

void LockFile::releaseProcess(std::uint32_t process) {
    set(m_descriptor, F_UNLCK, processByte(process));
}

bool LockFile::processLives(std::uint32_t process) const {
    return isHeld(m_descriptor, processByte(process), 1);
}

bool LockFile::anyProcessLives() const {
    return isHeld(m_descriptor, processByte(0), MAX_PROCESSES);
}

void LockFile::close() {
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}

}  // namespace juntora::desktop
