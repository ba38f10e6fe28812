// The timers of one thread's windows.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/types.h"

namespace juntora::desktop {

/// Milliseconds of the monotonic clock.
std::int64_t nowMilliseconds();

class Timers {
public:
    struct Due {
        HWND window;
        std::uintptr_t id;
        TIMERPROC callback;
    };

    /// Sets or replaces a timer.
    void set(HWND window, std::uintptr_t id, DWORD milliseconds, TIMERPROC callback);
    bool kill(HWND window, std::uintptr_t id);
    void killAllOf(HWND window);
    bool hasCallback(HWND window, std::uintptr_t id, TIMERPROC callback) const;
    bool isEmpty() const { return m_timers.empty(); }

    /// When the next one is due; the monotonic clock's milliseconds, none without a timer.
    std::optional<std::int64_t> nextDue() const;
    /// The timer of this window (0: any) that has been due longest, moved on to its next tick after
    /// `now` unless `keep`.
    std::optional<Due> takeDue(std::int64_t now, HWND window, bool keep);

private:
    struct Timer {
        HWND window;
        std::uintptr_t id;
        std::int64_t period;
        std::int64_t due;
        TIMERPROC callback;
    };
    std::vector<Timer> m_timers;
};

}  // namespace juntora::desktop
