#include "platform/desktop/Lock.h"

#include <time.h>

#include <cerrno>

#include "platform/desktop/Mend.h"

namespace juntora::desktop {
namespace {

constexpr int PATIENCE_SECONDS = 5;

}  // namespace

void initialiseLock(pthread_mutex_t* mutex, bool recursive) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_setpshared(&attributes, PTHREAD_PROCESS_SHARED);
    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST);
    if (recursive) {
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    }
    pthread_mutex_init(mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

SegmentLock::SegmentLock(Segment& segment) : m_segment(segment) {
    int outcome = pthread_mutex_trylock(&segment.lock);
    if (outcome == EBUSY) {
        timespec deadline{};
        clock_gettime(CLOCK_MONOTONIC, &deadline);
        deadline.tv_sec += PATIENCE_SECONDS;
        outcome = pthread_mutex_clocklock(&segment.lock, CLOCK_MONOTONIC, &deadline);
    }
    m_held = outcome == 0 || outcome == EOWNERDEAD;
    if (outcome == EOWNERDEAD) {
        // Whoever dies in here leaves the mutex as it found it: the next one mends from the start.
        mend(segment);
        pthread_mutex_consistent(&segment.lock);
    }
}

SegmentLock::~SegmentLock() {
    if (m_held) {
        pthread_mutex_unlock(&m_segment.lock);
    }
}

}  // namespace juntora::desktop
