// This process's place on its desktop.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "platform/desktop/Folder.h"
#include "platform/desktop/Layout.h"
#include "platform/desktop/LockFile.h"

namespace juntora::desktop {

class Attachment {
public:
    /// The desktop, opened by the first call; null when it cannot be used, which that call has
    /// reported. Any thread. A child that was forked without starting a program opens it anew.
    static Attachment* get() {
        Attachment* open = s_open.load(std::memory_order_acquire);
        return open != nullptr ? open : openOnce();
    }

    Segment& segment() { return *m_segment; }
    int folderDescriptor() const { return m_folder.descriptor(); }
    const std::string& folderPath() const { return m_folder.path(); }
    /// This process's index.
    std::uint32_t process() const { return m_process; }
    /// Whether the process with that index lives. A system call for any but this one.
    bool processLives(std::uint32_t process) const {
        return process == m_process || m_locks.processLives(process);
    }

private:
    Attachment() = default;
    static Attachment* openOnce();
    static void leaveAtExit();
    static void forgetInForkedChild();

    bool open(Problem* problem);
    bool mapSegment(Problem* problem);
    bool attach(Problem* problem);
    void leave();

    static std::atomic<Attachment*> s_open;

    Folder m_folder;
    LockFile m_locks;
    Segment* m_segment = nullptr;
    std::uint32_t m_process = NONE;
};

/// Makes calls of "at exit" and "after fork" reach a thread's queue (Queue.cpp).
void leaveQueueOfExitingThread();
void forgetQueuesInForkedChild();

}  // namespace juntora::desktop
