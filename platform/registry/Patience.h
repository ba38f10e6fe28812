// How long is waited for other programs' locks.
#pragma once

#include <chrono>

namespace juntora::registry {

/// Of one hive: up to LONG for a lock. When that was in vain SHORT is as much as is waited until
/// LONG has passed, so that somebody with many things to read or write, as a program at its start,
/// is held up once and not by each of them. For one thread at a time.
class Patience {
public:
    static constexpr std::chrono::milliseconds LONG{3'000};
    static constexpr std::chrono::milliseconds SHORT{100};

    /// Sleeps a little. False when no more is to be waited; `tries` counts from 0 for each lock.
    bool wait(int tries);

private:
    using Clock = std::chrono::steady_clock;

    Clock::time_point m_start;
    Clock::time_point m_vainUntil;
};

}  // namespace juntora::registry
