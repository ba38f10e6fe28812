// When to spin before sleeping. A spin pays only while the other side answers sooner than a sleep
// and a wake would take (about 20 us on the machines this was measured on), and it harms when both
// sides share a core; so both sides watch how it went lately.
#pragma once

#include <time.h>

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

class Patience {
public:
    static constexpr std::int64_t SPIN = 20'000;  ///< Nanoseconds.
    static constexpr std::int64_t LINGER_BELOW_GAP = 40'000;
    static constexpr std::uint32_t TRY_AGAIN_EVERY = 32;

    /// Spins until `done()`, if replies have lately come within a spin. Whether it is done.
    template <typename Done>
    bool spinForReply(Done&& done) {
        if (!m_repliesAreQuick && ++m_callsSinceTry < TRY_AGAIN_EVERY) {
            return done();
        }
        m_callsSinceTry = 0;
        m_repliesAreQuick = spin(done);
        return m_repliesAreQuick;
    }

    /// Spins until `done()`, if the last request came soon after the one before it.
    template <typename Done>
    bool linger(Done&& done) {
        const std::int64_t start = nowNanoseconds();
        const bool found = m_lastGap < LINGER_BELOW_GAP ? spin(done) : done();
        m_idleSince = start;
        return found;
    }

    /// Work has come: the gap is what passed since the thread had none.
    void noteWork() {
        if (m_idleSince != 0) {
            m_lastGap = nowNanoseconds() - m_idleSince;
            m_idleSince = 0;
        }
    }

private:
    template <typename Done>
    static bool spin(Done&& done) {
        constexpr int LOOKS_BETWEEN_CLOCKS = 16;
        const std::int64_t end = nowNanoseconds() + SPIN;
        do {
            for (int i = 0; i < LOOKS_BETWEEN_CLOCKS; ++i) {
                if (done()) {
                    return true;
                }
                relaxCore();
            }
        } while (nowNanoseconds() < end);
        return false;
    }

    bool m_repliesAreQuick = true;
    std::uint32_t m_callsSinceTry = 0;
    std::int64_t m_lastGap = LINGER_BELOW_GAP;
    std::int64_t m_idleSince = 0;
};

}  // namespace juntora::desktop
