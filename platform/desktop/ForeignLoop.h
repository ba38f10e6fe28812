// One descriptor for a loop that is not the layer's: readable when a queue has something to do.
#pragma once

#include <cstdint>
#include <optional>

namespace juntora::desktop {

class ForeignLoop {
public:
    ForeignLoop() = default;
    ~ForeignLoop();
    ForeignLoop(const ForeignLoop&) = delete;
    ForeignLoop& operator=(const ForeignLoop&) = delete;

    /// Makes the queue's FIFO and the set, once. False when the system has no descriptors left.
    bool open(int folder, std::uint32_t thread);
    bool isOpen() const { return m_set >= 0; }
    int descriptor() const { return m_set; }
    /// The queue's FIFO alone; -1 before open.
    int bell() const { return m_fifo; }

    /// Makes the set readable when a descriptor of the watched set is.
    void include(int watchedSet);
    /// The clock's milliseconds at which it is to become readable by itself; none for never.
    void wakeAt(std::optional<std::int64_t> due);
    /// Makes it readable now.
    void wakeNow();
    /// Takes what has made it readable.
    void clear();

private:
    int m_set = -1;
    int m_fifo = -1;
    int m_timer = -1;
    int m_included = -1;
    std::optional<std::int64_t> m_due;
};

}  // namespace juntora::desktop
