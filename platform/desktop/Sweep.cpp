#include "platform/desktop/Sweep.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/desktop/Futex.h"
#include "platform/desktop/Life.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/WindowIndex.h"
#include "platform/kernel/NamedObjects.h"
#include "platform/kernel/StartRecords.h"

namespace juntora::desktop {
namespace {

bool isClaimed(const ThreadSlot& thread) { return (thread.generation.load() & 1) != 0; }

void unmakeWindowsOf(Segment& segment, std::uint32_t thread) {
    const std::uint32_t generation = segment.threads[thread].generation.load();
    for (std::uint32_t index = 1; index < segment.windowLimit.load(); ++index) {
        const WindowSlot& slot = segment.windows[index];
        if (slot.live.load() != 0 && slot.thread.load() == thread &&
            slot.threadGeneration.load() == generation) {
            unmakeWindow(segment, index);
        }
    }
}

/// The life mutex of a slot without an owner, in the caller's hands; false if its owner lives.
bool takeLife(ThreadSlot& thread) {
    if (thread.generation.load() == 0) {
        initialiseLock(&thread.life);
    }
    const int outcome = pthread_mutex_trylock(&thread.life);
    if (outcome == EOWNERDEAD) {
        pthread_mutex_consistent(&thread.life);
    }
    return outcome == 0 || outcome == EOWNERDEAD;
}

/// The slot's generation turns even, and whoever waits on the thread is woken.
void endThread(ThreadSlot& thread) {
    thread.generation.fetch_add(1);
    pthread_mutex_unlock(&thread.life);
    futexWakeAll(&lifeWord(thread));
}

bool sweepOneThread(Segment& segment, std::uint32_t index) {
    ThreadSlot& thread = segment.threads[index];
    if (!isClaimed(thread) || !takeLife(thread)) {
        return false;
    }
    unmakeWindowsOf(segment, index);
    endThread(thread);
    return true;
}

void sweepProcess(Attachment& desktop, std::uint32_t process) {
    Segment& segment = desktop.segment();
    for (std::uint32_t i = 0; i < segment.threadLimit.load(); ++i) {
        if (segment.threads[i].process.load() == process) {
            sweepOneThread(segment, i);
        }
    }
    kernel::releaseHoldsOf(desktop, process);
    kernel::releaseStartsOf(segment, process);
    segment.processes[process].live = 0;
}

void sweepIfGone(Attachment& desktop, std::uint32_t process) {
    if (desktop.segment().processes[process].live.load() != 0 && !desktop.processLives(process)) {
        sweepProcess(desktop, process);
    }
}

std::uint32_t findFreeThread(const Segment& segment) {
    for (std::uint32_t i = 0; i < MAX_THREADS; ++i) {
        if (!isClaimed(segment.threads[i])) {
            return i;
        }
    }
    return NONE;
}

}  // namespace

std::uint32_t claimThread(Attachment& desktop, std::uint32_t* generation) {
    Segment& segment = desktop.segment();
    std::uint32_t index = findFreeThread(segment);
    if (index == NONE) {
        sweepAll(desktop);
        index = findFreeThread(segment);
    }
    if (index == NONE || !takeLife(segment.threads[index])) {
        return NONE;
    }
    ThreadSlot& thread = segment.threads[index];
    thread.process = desktop.process();
    thread.kernelId = static_cast<std::uint32_t>(getpid());
    segment.threadLimit = std::max(segment.threadLimit.load(), index + 1);
    *generation = thread.generation.load() + 1;
    thread.generation = *generation;
    return index;
}

void releaseThread(Attachment& desktop, std::uint32_t thread) {
    unmakeWindowsOf(desktop.segment(), thread);
    endThread(desktop.segment().threads[thread]);
}

void sweepThread(Attachment& desktop, std::uint32_t thread) {
    const std::uint32_t process = desktop.segment().threads[thread].process.load();
    if (sweepOneThread(desktop.segment(), thread)) {
        sweepIfGone(desktop, process);
    }
}

void sweepAll(Attachment& desktop) {
    for (std::uint32_t i = 0; i < MAX_PROCESSES; ++i) {
        sweepIfGone(desktop, i);
    }
    for (std::uint32_t i = 0; i < desktop.segment().threadLimit.load(); ++i) {
        sweepOneThread(desktop.segment(), i);
    }
}

void sweepDeadThread(std::uint32_t thread) {
    Attachment* desktop = Attachment::get();
    if (desktop == nullptr) {
        return;
    }
    const SegmentLock lock(desktop->segment());
    if (lock) {
        sweepThread(*desktop, thread);
    }
}

}  // namespace juntora::desktop
