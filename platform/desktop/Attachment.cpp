#include "platform/desktop/Attachment.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <mutex>

#include "platform/desktop/Lock.h"
#include "platform/desktop/SegmentFile.h"
#include "platform/desktop/Sweep.h"
#include "platform/desktop/desktop.h"
#include "platform/kernel/Handles.h"
#include "platform/kernel/NamedObjects.h"
#include "platform/kernel/StartRecords.h"

namespace juntora::desktop {
namespace {

struct Opening {
    std::mutex mutex;
    bool tried = false;
    bool hooked = false;
    /// Kept after leaving too: a thread that still runs may be looking at it.
    std::unique_ptr<Attachment> attachment;
};

Opening& opening() {
    static auto* const state = new Opening;  // Outlives everything that may call the layer at exit.
    return *state;
}

/// A slot that no living process has, its byte taken; NONE when there is none.
std::uint32_t takeProcessSlot(const Segment& segment, LockFile& locks) {
    for (std::uint32_t i = 0; i < MAX_PROCESSES; ++i) {
        if (segment.processes[i].live.load() == 0 && locks.takeProcess(i)) {
            return i;
        }
    }
    return NONE;
}

}  // namespace

std::atomic<Attachment*> Attachment::s_open = nullptr;

Attachment* Attachment::openOnce() {
    Opening& state = opening();
    const std::lock_guard guard(state.mutex);
    if (state.tried) {
        return s_open.load();
    }
    state.tried = true;
    if (!state.hooked) {
        state.hooked = true;
        pthread_atfork(nullptr, nullptr, &Attachment::forgetInForkedChild);
        std::atexit(&Attachment::leaveAtExit);
    }
    Problem problem;
    auto desktop = std::unique_ptr<Attachment>(new Attachment);
    if (!desktop->open(&problem)) {
        std::fprintf(stderr, "juntora: %s.\n", problem.c_str());
        return nullptr;
    }
    state.attachment = std::move(desktop);
    s_open = state.attachment.get();
    return s_open.load();
}

bool Attachment::open(Problem* problem) {
    for (;;) {
        m_folder = Folder::open(problem);
        if (m_folder.descriptor() < 0) {
            return false;
        }
        if (m_locks.openAndEnter(m_folder, problem)) {
            break;
        }
        // The last one out may have removed the folder under our feet: its like is made anew.
        if (faccessat(m_folder.descriptor(), ".", F_OK, 0) == 0 &&
            access(m_folder.path().c_str(), F_OK) == 0) {
            return false;
        }
        m_locks.close();
        problem->clear();
    }
    const bool attached = mapSegment(problem) && attach(problem);
    m_locks.exit();
    return attached;
}

bool Attachment::mapSegment(Problem* problem) {
    m_segment = mapSegmentFile(m_folder, m_locks.anyProcessLives(), problem);
    return m_segment != nullptr;
}

bool Attachment::attach(Problem* problem) {
    const SegmentLock lock(*m_segment);
    if (!lock) {
        *problem = "a program on the desktop " + m_folder.path() +
                   " has been stopped in the middle of a change; let it go on or end it";
        return false;
    }
    m_process = takeProcessSlot(*m_segment, m_locks);
    if (m_process == NONE) {
        sweepAll(*this);
        m_process = takeProcessSlot(*m_segment, m_locks);
    }
    if (m_process == NONE) {
        *problem = "there are " + std::to_string(MAX_PROCESSES) + " programs on the desktop " +
                   m_folder.path() + " already, which is all that it holds";
        return false;
    }
    ProcessSlot& slot = m_segment->processes[m_process];
    slot.kernelId = static_cast<std::uint32_t>(getpid());
    slot.live = 1;
    return true;
}

void Attachment::leave() {
    if (!m_locks.enter()) {
        return;  // Others will find this process gone and sweep it.
    }
    {
        const SegmentLock lock(*m_segment);
        if (lock) {
            kernel::releaseHoldsOf(*this, m_process);
            kernel::releaseStartsOf(*m_segment, m_process);
            m_segment->processes[m_process].live = 0;
        }
    }
    m_locks.releaseProcess(m_process);
    if (!m_locks.anyProcessLives()) {
        removeDesktopFiles(m_folder);
        unlinkat(m_folder.descriptor(), "locks", 0);
        m_folder.removeIfEmpty();
    }
    m_locks.exit();
}

void Attachment::leaveAtExit() {
    Attachment* desktop = s_open.load();
    if (desktop == nullptr) {
        return;
    }
    leaveQueueOfExitingThread();
    s_open = nullptr;
    desktop->leave();
}

void Attachment::forgetInForkedChild() {
    Attachment* desktop = s_open.exchange(nullptr);
    opening().tried = false;
    if (desktop != nullptr) {
        desktop->m_locks.close();
        kernel::forgetObjectsInForkedChild();
        // Not destroyed: the parent's queues, of which this memory holds a copy, refer to it.
        static_cast<void>(opening().attachment.release());
    }
    forgetQueuesInForkedChild();
}

}  // namespace juntora::desktop

namespace juntora {

bool OpenDesktop() { return desktop::Attachment::get() != nullptr; }

}  // namespace juntora
