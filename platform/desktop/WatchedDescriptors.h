// Descriptors that a thread's message loop watches for its program.
#pragma once

#include <atomic>
#include <map>
#include <thread>

namespace juntora::desktop {

/// The loop itself sleeps on a word of shared memory: waking it so costs less than through a
/// descriptor, and, what counts more, the kernel wakes the reader of a pipe on the writer's core,
/// where two processes that talk back to back would then keep each other waiting. What descriptors
/// there are a thread of this object's own looks after, which rings when one is ready.
class WatchedDescriptors {
public:
    /// `bell`: of the queue whose thread owns this object and makes all calls.
    explicit WatchedDescriptors(std::atomic<std::uint32_t>& bell) : m_bell(bell) {}
    ~WatchedDescriptors();
    WatchedDescriptors(const WatchedDescriptors&) = delete;
    WatchedDescriptors& operator=(const WatchedDescriptors&) = delete;

    /// `ready(context)` is called by callReady whenever the descriptor has become readable. False
    /// when the system has no descriptors left.
    bool watch(int descriptor, void (*ready)(void*), void* context);
    void unwatch(int descriptor);

    /// Whether callReady has something to do; one load. Only while the thread of this object runs.
    bool isReady() const { return m_isReady.load(); }
    /// Calls those whose descriptors are ready.
    void callReady();

    /// Has somebody look after the descriptors while the loop sleeps, if there are any.
    void lookAfter();
    /// The set of them, itself a descriptor that is readable when one of them is; -1 before the
    /// first.
    int descriptor() const { return m_set; }

private:
    struct Watcher {
        void (*ready)(void*);
        void* context;
    };

    bool openSet();
    bool openAlarm();
    void runLookout();

    std::atomic<std::uint32_t>& m_bell;
    std::map<int, Watcher> m_watchers;
    int m_set = -1;    ///< The descriptors, edge-triggered.
    int m_alarm = -1;  ///< That set, told of once until it has been looked at, and the end.
    int m_end = -1;
    std::atomic<bool> m_isReady = false;
    std::thread m_lookout;
};

}  // namespace juntora::desktop
