// When to spin before sleeping. A spin pays only while the other side is quicker than a sleep and a
// wake would be (about 20 us on the machines this was measured on), and it harms when both sides
// share a core; so both sides go by how it went lately.
#pragma once

#include <time.h>

#include <algorithm>
#include <cstdint>

namespace juntora::desktop {

inline std::int64_t nowNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

inline void relaxCore() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

/// Whether spinning for one kind of event pays. It does as long as the last spin caught the event;
/// after one that did not there is a new try at the second occasion, then at each time twice as
/// many, up to 1,024, as long as the tries fail. Where the core is wanted by others it does not pay
/// at all.
class Spin {
public:
    explicit Spin(std::int64_t nanoseconds) : m_length(nanoseconds) {}

    /// Counts an occasion on which a spin would be in vain as things stand; whether a try is due.
    bool isDue() {
        m_pays = false;
        return ++m_missed >= m_tryAfter;
    }

    /// Spins until `done()`, if that is promising. Whether it is done.
    template <typename Done>
    bool until(Done&& done) {
        if (!m_pays && ++m_missed < m_tryAfter) {
            return done();
        }
        bool interrupted = false;
        const bool caught = spin(done, &interrupted);
        if (interrupted) {
            m_tryAfter = LAST_TRY;
        } else {
            m_tryAfter = caught || m_pays ? FIRST_TRY : std::min(2 * m_tryAfter, LAST_TRY);
        }
        m_pays = caught && !interrupted;
        m_missed = 0;
        return caught;
    }

    /// The event has come soon, though nobody counted on it.
    void encourage() { m_pays = true; }

private:
    static constexpr std::uint32_t FIRST_TRY = 2;
    static constexpr std::uint32_t LAST_TRY = 1024;

    /// `interrupted`: others have had the core meanwhile, who must not be kept waiting for nothing.
    template <typename Done>
    bool spin(Done&& done, bool* interrupted) const {
        constexpr int LOOKS_BETWEEN_CLOCKS = 16;
        constexpr std::int64_t LONGEST_STEP = 50'000;
        std::int64_t now = nowNanoseconds();
        const std::int64_t end = now + m_length;
        while (now < end) {
            for (int i = 0; i < LOOKS_BETWEEN_CLOCKS; ++i) {
                if (done()) {
                    return true;
                }
                relaxCore();
            }
            const std::int64_t then = now;
            now = nowNanoseconds();
            *interrupted = *interrupted || now - then > LONGEST_STEP;
        }
        return false;
    }

    const std::int64_t m_length;
    bool m_pays = true;
    std::uint32_t m_missed = 0;
    std::uint32_t m_tryAfter = FIRST_TRY;
};

/// A thread's occasions to spin, in nanoseconds.
struct Patience {
    /// A sender, for the answer: long enough for a receiver that has to be woken first, or whose
    /// core somebody else has for a moment.
    Spin reply{100'000};
    /// A receiver that has nothing to do, for the next request: long enough for a sender that was
    /// asleep when it was answered, or that works a little between two requests.
    Spin request{40'000};
    /// A receiver that has answered a sender which was awake, for the request that follows at once.
    Spin next{3'000};
};

}  // namespace juntora::desktop
