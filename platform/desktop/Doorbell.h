// How a thread that has mail is told, at no cost while it is awake.
#pragma once

#include <atomic>
#include <cstdint>

namespace juntora::desktop {

/// The word by which a thread says how it sleeps. Above the two bits of state the owner counts its
/// sleeps, so that a ringer that comes late cannot mistake one sleep for another.
///
/// A thread that is about to sleep sets the word, looks at its mail once more and then sleeps. A
/// sender delivers, reads the word, and rings only if it says so. Ringing wakes first and resets
/// the word after (or both in one step), so that a ringer that dies half-way leaves the bell to the
/// next.
enum BellState : std::uint32_t {
    AWAKE = 0,
    IN_FUTEX = 1,  ///< Asleep on the word itself.
    IN_POLL = 2,   ///< In a foreign loop, which polls its queue's FIFO.
};

inline constexpr std::uint32_t BELL_STATE_BITS = 3;

inline std::uint32_t nextSleep(std::uint32_t bell, BellState state) {
    return ((bell & ~BELL_STATE_BITS) + BELL_STATE_BITS + 1) | state;
}

/// The FIFOs that this thread has written to lately, by queue. A full table forgets the one that is
/// in the way.
class BellRopes {
public:
    BellRopes() = default;
    BellRopes(const BellRopes&) = delete;
    BellRopes& operator=(const BellRopes&) = delete;
    ~BellRopes();

    /// Puts one byte into the FIFO of a thread's queue; what is full wakes as well.
    void pull(int folder, std::uint32_t thread);

private:
    static constexpr std::uint32_t ROPES = 64;
    struct Rope {
        std::uint32_t thread = 0;
        int descriptor = -1;
    };
    Rope m_ropes[ROPES];
};

/// The name of a queue's FIFO in the desktop's folder.
void fifoName(std::uint32_t thread, char (&name)[24]);

/// Rings a thread's bell if it sleeps. To be called behind the delivery, which must be a locked
/// instruction (Ring::push and a reply are).
inline bool isAsleep(std::uint32_t bell) { return (bell & BELL_STATE_BITS) != AWAKE; }
void ring(std::atomic<std::uint32_t>& bell, std::uint32_t seen, int folder, std::uint32_t thread,
          BellRopes& ropes);

}  // namespace juntora::desktop
