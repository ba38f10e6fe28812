#include "common/FileLock.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "common/CaseBlind.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

using Text = std::unique_ptr<char[]>;

constexpr LONG MOST_HOLDERS = 0x7fffffff;

constexpr char WRITE_KIND = 'w';
constexpr char READ_KIND = 'r';
constexpr char MONITOR_KIND = 'm';

/// The path in small letters, and room for one more character; null without memory.
Text lowered(const char* path) {
    const std::size_t length = std::strlen(path);
    Text text(new (std::nothrow) char[length + 2]);
    if (text != nullptr) {
        std::transform(path, path + length, text.get(), foldCase);
        text[length] = '\0';
    }
    return text;
}

Text semaphoreName(const char* path, char kind) {
    Text name = lowered(path);
    if (name != nullptr) {
        char* end = name.get() + std::strlen(name.get());
        std::replace(name.get(), end, '\\', '/');
        end[0] = kind;
        end[1] = '\0';
    }
    return name;
}

/// Takes a count of the path's semaphore of that kind. The semaphore is stored on success only.
int take(const char* path, char kind, unsigned long timeout, HANDLE* taken) {
    if (path == nullptr) {
        return LOCK_NO_NAME;
    }
    const Text name = semaphoreName(path, kind);
    if (name == nullptr) {
        return LOCK_NO_MEMORY;
    }
    const LONG counts = kind == WRITE_KIND ? 1 : MOST_HOLDERS;
    HANDLE semaphore = CreateSemaphoreA(counts, counts, name.get());
    if (semaphore == nullptr) {
        return LOCK_SYSTEM_FAILED;
    }
    const auto milliseconds = static_cast<DWORD>(std::min<unsigned long>(timeout, INFINITE));
    if (WaitForSingleObject(semaphore, milliseconds) == WAIT_TIMEOUT) {
        CloseHandle(semaphore);
        return LOCK_TIMED_OUT;
    }
    *taken = semaphore;
    return LOCK_DONE;
}

/// Gives a count back and closes the handle. The count before it, -1 if that failed.
int release(HANDLE semaphore) {
    if (semaphore == nullptr) {
        return LOCK_NOT_HELD;
    }
    LONG previous = -1;
    const bool isReleased = ReleaseSemaphore(semaphore, 1, &previous) != 0;
    CloseHandle(semaphore);
    return isReleased ? previous : -1;
}

/// Whether more have a count than this object, which asks, and perhaps `holdsOne`.
bool isAnotherHolder(const char* path, char kind, bool holdsOne) {
    HANDLE asking = nullptr;
    if (take(path, kind, 0, &asking) != LOCK_DONE) {
        return false;
    }
    const int before = release(asking);
    return before >= 0 && before < MOST_HOLDERS - (holdsOne ? 2 : 1);
}

bool isWriterInside(const char* path) {
    HANDLE asking = nullptr;
    const int result = take(path, WRITE_KIND, 0, &asking);
    release(asking);
    return result == LOCK_TIMED_OUT;
}

bool isMode(int mode) { return mode == LOCK_MODE_READ || mode == LOCK_MODE_WRITE; }

}  // namespace

FileLock::FileLock(const char* path) : m_pszName(path == nullptr ? nullptr : lowered(path)) {}

FileLock::~FileLock() {
    release(m_hLock);
    release(m_hMonitor);
}

int FileLock::lock(const char* path, unsigned long timeout, int mode) {
    if (!isMode(mode)) {
        return LOCK_BAD_MODE;
    }
    if (m_hLock != nullptr) {
        return LOCK_ALREADY_HELD;
    }
    if (path != nullptr) {
        Text name = lowered(path);
        if (name == nullptr) {
            return LOCK_NO_MEMORY;
        }
        m_pszName = std::move(name);
    }
    HANDLE gate = nullptr;
    int result = take(m_pszName.get(), WRITE_KIND, timeout, &gate);
    if (result != LOCK_DONE) {
        return result;
    }
    if (mode == LOCK_MODE_WRITE) {
        if (isAnotherHolder(m_pszName.get(), READ_KIND, false)) {
            release(gate);
            return LOCK_TIMED_OUT;
        }
        m_hLock = gate;
    } else {
        result = take(m_pszName.get(), READ_KIND, timeout, &m_hLock);
        release(gate);
    }
    if (result == LOCK_DONE) {
        m_nMode = mode;
    }
    return result;
}

int FileLock::unlock() {
    if (m_hLock == nullptr) {
        return LOCK_NOT_HELD;
    }
    release(m_hMonitor);
    const int before = release(m_hLock);
    // Both handles are closed even where a release failed, and may soon stand for something else.
    m_hLock = nullptr;
    m_hMonitor = nullptr;
    m_bMonitored = 0;
    m_nMode = LOCK_MODE_NONE;
    return before < 0 ? LOCK_SYSTEM_FAILED : LOCK_DONE;
}

int FileLock::setMode(int mode, unsigned long timeout) {
    if (m_pszName == nullptr) {
        return LOCK_NO_NAME;
    }
    if (m_hLock == nullptr) {
        return LOCK_NOT_HELD;
    }
    if (!isMode(mode)) {
        return LOCK_BAD_MODE;
    }
    if (mode == m_nMode) {
        return LOCK_DONE;
    }
    unlock();
    const char kind = mode == LOCK_MODE_READ ? READ_KIND : WRITE_KIND;
    const int result = take(m_pszName.get(), kind, timeout, &m_hLock);
    if (result == LOCK_DONE) {
        m_nMode = mode;
    }
    return result;
}

int FileLock::setMonitored(unsigned char on) {
    const unsigned char monitored = on != 0 ? 1 : 0;
    if (monitored == m_bMonitored) {
        return LOCK_DONE;
    }
    if (monitored == 0) {
        release(m_hMonitor);
        m_hMonitor = nullptr;
        m_bMonitored = 0;
        return LOCK_DONE;
    }
    const int result = take(m_pszName.get(), MONITOR_KIND, 0, &m_hMonitor);
    if (result == LOCK_DONE) {
        m_bMonitored = 1;
    }
    return result;
}

bool FileLock::isHeldByOther(char kind) {
    switch (kind) {
        case WRITE_KIND:
            return isWriterInside(m_pszName.get());
        case READ_KIND:
            return isAnotherHolder(m_pszName.get(), READ_KIND, m_nMode == LOCK_MODE_READ);
        default:
            return false;
    }
}

bool FileLock::isMonitoredByOther() {
    return isAnotherHolder(m_pszName.get(), MONITOR_KIND, m_bMonitored != 0);
}

int FileLock::status() {
    int status = m_bMonitored != 0 ? LOCK_WATCHED_BY_THIS : 0;
    if (isMonitoredByOther()) {
        status |= LOCK_WATCHED_BY_OTHER;
    }
    if (m_nMode == LOCK_MODE_WRITE) {
        return status | LOCK_WRITTEN_BY_THIS;
    }
    if (m_nMode == LOCK_MODE_READ) {
        status |= LOCK_READ_BY_THIS;
    }
    if (isWriterInside(m_pszName.get())) {
        return status | LOCK_WRITTEN_BY_OTHER;
    }
    if (isHeldByOther(READ_KIND)) {
        status |= LOCK_READ_BY_OTHER;
    }
    return status;
}

}  // namespace juntora
