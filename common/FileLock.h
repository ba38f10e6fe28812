// Who reads, writes or watches a file, among all processes of the desktop and without any server.
//
// Three named semaphores stand for a path. Their names are the path in small letters, with forward
// slashes only, and a letter behind it:
//  - "w", one count: the writer's; a reader has it only while it enters;
//  - "r", 0x7fffffff counts: one for each reader;
//  - "m", 0x7fffffff counts: one for each object that watches the file.
// Forms of a path that differ in case (of A to Z) or in the kind of separator meet; others don't,
// so callers pass normal forms. Paths of more than 510 bytes cannot be locked and have status 0.
#pragma once

#include <memory>

#include "platform/types.h"

namespace juntora {

/// What the operations return. Those behind a result of 1 have set GetLastError.
enum LockResult : int {
    LOCK_DONE = 0,
    LOCK_SYSTEM_FAILED = 1,  ///< A system call failed; GetLastError tells why.
    LOCK_TIMED_OUT = 3,      ///< Not to be had within the time given.
    LOCK_ALREADY_HELD = 4,   ///< This object holds a lock.
    LOCK_NOT_HELD = 5,       ///< This object holds no lock, or a handle was null.
    LOCK_NO_MEMORY = 6,
    LOCK_NO_NAME = 7,
    LOCK_BAD_MODE = 8,  ///< Bad mode or kind.
    LOCK_NO_PLACE = 9,  ///< No place for the result.
};

enum LockMode : int { LOCK_MODE_NONE = 0, LOCK_MODE_READ = 1, LOCK_MODE_WRITE = 2 };

/// What FileLock::status is made of.
enum LockStatus : int {
    LOCK_READ_BY_THIS = 1,
    LOCK_READ_BY_OTHER = 2,
    LOCK_WRITTEN_BY_THIS = 4,
    LOCK_WRITTEN_BY_OTHER = 8,
    LOCK_WATCHED_BY_THIS = 16,
    LOCK_WATCHED_BY_OTHER = 32,
};

/// A holder of locks on one file at a time. What it holds goes back when it is destroyed, and when
/// its process leaves or dies. Two objects are others to each other, in one process too. One object
/// is for one thread. Times are in milliseconds; INFINITE, or more, waits for ever. Waiting serves
/// no messages.
class FileLock {
public:
    /// `path` is copied; it may be null, which touches nothing. Without memory for it: as null.
    explicit FileLock(const char* path);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Takes a lock of `mode` (1 read, 2 write) on `path`, or on the path it has if that is null.
    /// A writer that finds a reader inside gets 3 without waiting for its end: the time is for the
    /// gate alone. Returns 0, 1, 3, 4, 6, 7 or 8.
    int lock(const char* path, unsigned long timeout, int mode);

    /// Gives the lock and the monitor count back. 0, 5 without a lock, or 1 if there was nothing to
    /// give back to; the object holds neither from then on.
    int unlock();

    /// Changes the mode of the lock. It is given up in between, the monitor count with it, and a
    /// change to 2 looks at no readers. A failure leaves the object without a lock. Returns 0, 1,
    /// 3, 5, 6, 7 or 8.
    int setMode(int mode, unsigned long timeout);

    /// Takes a monitor count (any `on` but 0) or gives it back. Returns 0, 1, 3, 6 or 7.
    int setMonitored(unsigned char on);

    /// Whether anybody has the semaphore of that kind: 'r', another reader; 'w', a writer, which
    /// may be this object. False for any other kind and where it cannot be told.
    bool isHeldByOther(char kind);
    bool isMonitoredByOther();

    /// LockStatus bits, out of date at once if others are at work. On the object that holds the
    /// write lock no look at readers is taken. What cannot be told is not set.
    int status();

private:
    HANDLE m_hLock = nullptr;
    HANDLE m_hMonitor = nullptr;
    std::unique_ptr<char[]> m_pszName;  ///< In small letters.
    int m_nMode = LOCK_MODE_NONE;
    unsigned char m_bMonitored = 0;
};

}  // namespace juntora
