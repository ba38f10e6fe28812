// What an idle thread sleeps on: its FIFO, its timers, and descriptors that others watch through
// it.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

namespace juntora::desktop {

class WaitSet {
public:
    WaitSet() = default;
    WaitSet(const WaitSet&) = delete;
    WaitSet& operator=(const WaitSet&) = delete;
    ~WaitSet();

    /// Makes the queue's FIFO and the set, once. False when the system has no descriptors left.
    bool open(int folder, std::uint32_t thread);
    bool isOpen() const { return m_set >= 0; }
    /// Readable when wait would return at once.
    int descriptor() const { return m_set; }

    /// Sleeps up to `milliseconds` (-1: for ever) and calls what watches the descriptors that are
    /// ready. Whether anything was.
    bool wait(int milliseconds);

    /// The clock's milliseconds at which the set is to wake; none for never.
    void wakeAt(std::optional<std::int64_t> due);

    bool watch(int descriptor, void (*ready)(void*), void* context);
    void unwatch(int descriptor);

private:
    struct Watcher {
        void (*ready)(void*);
        void* context;
    };

    void drainFifo();

    int m_set = -1;
    int m_fifo = -1;
    int m_timer = -1;
    std::optional<std::int64_t> m_due;
    int m_fifoWakes = 0;
    std::map<int, Watcher> m_watchers;
};

}  // namespace juntora::desktop
