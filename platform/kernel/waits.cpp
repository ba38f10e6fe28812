// Waiting for objects and releasing them.
#include <poll.h>
#include <pthread.h>
#include <time.h>

#include <algorithm>
#include <cerrno>
#include <map>
#include <mutex>

#include "platform/desktop/Futex.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/Queue.h"
#include "platform/desktop/Timers.h"
#include "platform/kernel/Handles.h"
#include "platform/kernel/MutexOwner.h"
#include "platform/kernel/NamedObjects.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace kernel {
namespace {

using desktop::Attachment;
using desktop::NamedObject;
using desktop::SegmentLock;

/// How long a waiter for a count sleeps before it looks whether a holder has died.
constexpr DWORD LOOK_FOR_DEAD_MILLISECONDS = 50;

std::uint64_t thisThread() {
    static thread_local const char mark = 0;
    return reinterpret_cast<std::uint64_t>(&mark);
}

NamedObject& objectOf(Attachment& desktop, const Handle& entry) {
    return desktop.segment().objects[entry.object];
}

int lockMutex(pthread_mutex_t& mutex, DWORD milliseconds) {
    const int outcome = pthread_mutex_trylock(&mutex);
    if (outcome != EBUSY || milliseconds == 0) {
        return outcome;
    }
    desktop::Queue::ringBeforeBlocking();
    if (milliseconds == INFINITE) {
        return pthread_mutex_lock(&mutex);
    }
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += milliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (deadline.tv_nsec >= 1'000'000'000) {
        ++deadline.tv_sec;
        deadline.tv_nsec -= 1'000'000'000;
    }
    return pthread_mutex_clocklock(&mutex, CLOCK_MONOTONIC, &deadline);
}

DWORD waitForMutex(Attachment& desktop, Handle& entry, DWORD milliseconds) {
    pthread_mutex_t& mutex = objectOf(desktop, entry).mutex;
    const int outcome = lockMutex(mutex, milliseconds);
    if (outcome != 0 && outcome != EOWNERDEAD) {
        return outcome == EBUSY || outcome == ETIMEDOUT ? WAIT_TIMEOUT : WAIT_FAILED;
    }
    if (outcome == EOWNERDEAD) {
        pthread_mutex_consistent(&mutex);
    }
    entry.owner.store(thisThread(), std::memory_order_relaxed);
    entry.owned.store(entry.owned.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
    return outcome == EOWNERDEAD ? WAIT_ABANDONED : WAIT_OBJECT_0;
}

/// Takes a count if there is one.
bool takeCount(Attachment& desktop, const Handle& entry) {
    const SegmentLock lock(desktop.segment());
    if (!lock) {
        return false;
    }
    if (objectOf(desktop, entry).count.load() == 0) {
        giveBackDeadCounts(desktop, entry.object);
    }
    if (objectOf(desktop, entry).count.load() == 0) {
        return false;
    }
    changeCount(desktop.segment(), entry.object, entry.hold, -1);
    return true;
}

DWORD waitForSemaphore(Attachment& desktop, const Handle& entry, DWORD milliseconds) {
    const std::int64_t end = desktop::nowMilliseconds() + milliseconds;
    desktop::Queue::ringBeforeBlocking();
    while (!takeCount(desktop, entry)) {
        const std::int64_t left =
            milliseconds == INFINITE ? INFINITE : end - desktop::nowMilliseconds();
        if (left <= 0) {
            return WAIT_TIMEOUT;
        }
        const auto slice =
            static_cast<DWORD>(std::min<std::int64_t>(left, LOOK_FOR_DEAD_MILLISECONDS));
        desktop::futexWait({&objectOf(desktop, entry).count, 0}, {nullptr, 0}, slice);
    }
    return WAIT_OBJECT_0;
}

DWORD waitForProcess(const Handle& entry, DWORD milliseconds) {
    desktop::Queue::ringBeforeBlocking();
    pollfd ended{entry.descriptor, POLLIN, 0};
    const int timeout =
        milliseconds == INFINITE ? -1 : static_cast<int>(std::min<DWORD>(milliseconds, INT32_MAX));
    const int count = poll(&ended, 1, timeout);
    return count > 0 ? WAIT_OBJECT_0 : count == 0 ? WAIT_TIMEOUT : WAIT_FAILED;
}

struct Views {
    std::mutex mutex;
    std::map<const void*, std::size_t> bytes;
};

Views& views() {
    static auto* const all = new Views;  // A tool may close its block from a static destructor.
    return *all;
}

}  // namespace

bool letGoOfMutex(Handle& entry) {
    if (entry.kind.load() != HandleKind::MUTEX || entry.owned.load() == 0) {
        return true;
    }
    if (entry.owner.load() != thisThread()) {
        return false;
    }
    while (ReleaseMutex(valueOf(&entry)) != 0) {
    }
    return true;
}

void rememberView(const void* view, std::size_t bytes) {
    const std::lock_guard guard(views().mutex);
    views().bytes[view] = bytes;
}

std::size_t forgetView(const void* view) {
    const std::lock_guard guard(views().mutex);
    const auto found = views().bytes.find(view);
    if (found == views().bytes.end()) {
        return 0;
    }
    const std::size_t bytes = found->second;
    views().bytes.erase(found);
    return bytes;
}

}  // namespace kernel

DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds) {
    kernel::Handle* entry = kernel::anyHandle(object);
    if (entry != nullptr && entry->kind.load() == kernel::HandleKind::PROCESS) {
        return kernel::waitForProcess(*entry, milliseconds);
    }
    desktop::Attachment* desktop = desktop::Attachment::get();
    if (entry != nullptr && desktop != nullptr) {
        switch (entry->kind.load(std::memory_order_relaxed)) {
            case kernel::HandleKind::MUTEX:
                return kernel::waitForMutex(*desktop, *entry, milliseconds);
            case kernel::HandleKind::SEMAPHORE:
                return kernel::waitForSemaphore(*desktop, *entry, milliseconds);
            default:
                break;
        }
    }
    SetLastError(ERROR_INVALID_HANDLE);
    return WAIT_FAILED;
}

BOOL ReleaseMutex(HANDLE mutex) {
    kernel::Handle* entry = kernel::handleOf(mutex, kernel::HandleKind::MUTEX);
    desktop::Attachment* desktop = desktop::Attachment::get();
    if (entry == nullptr || desktop == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    const std::uint32_t owned = entry->owned.load(std::memory_order_relaxed);
    if (owned == 0 || entry->owner.load(std::memory_order_relaxed) != kernel::thisThread()) {
        SetLastError(ERROR_NOT_OWNER);
        return 0;
    }
    entry->owned.store(owned - 1, std::memory_order_relaxed);
    if (owned == 1) {
        entry->owner.store(0, std::memory_order_relaxed);
    }
    pthread_mutex_unlock(&kernel::objectOf(*desktop, *entry).mutex);
    return 1;
}

BOOL ReleaseSemaphore(HANDLE semaphore, LONG count, LONG* previous) {
    kernel::Handle* entry = kernel::handleOf(semaphore, kernel::HandleKind::SEMAPHORE);
    desktop::Attachment* desktop = desktop::Attachment::get();
    if (entry == nullptr || desktop == nullptr || count <= 0) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    desktop::NamedObject& object = kernel::objectOf(*desktop, *entry);
    {
        const desktop::SegmentLock lock(desktop->segment());
        if (lock && previous != nullptr) {
            kernel::giveBackDeadCounts(*desktop, entry->object);
        }
        if (!lock || static_cast<std::uint32_t>(count) > object.maximum - object.count.load()) {
            SetLastError(ERROR_TOO_MANY_POSTS);
            return 0;
        }
        if (previous != nullptr) {
            *previous = static_cast<LONG>(object.count.load());
        }
        kernel::changeCount(desktop->segment(), entry->object, entry->hold, count);
    }
    desktop::futexWakeAll(&object.count);
    return 1;
}

}  // namespace juntora
