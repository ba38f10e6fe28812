#include "platform/desktop/Timers.h"

#include <time.h>

#include <algorithm>

namespace juntora::desktop {
namespace {

constexpr DWORD SHORTEST_PERIOD = 10;

}  // namespace

std::int64_t nowMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

void Timers::set(HWND window, std::uintptr_t id, DWORD milliseconds, TIMERPROC callback) {
    kill(window, id);
    const std::int64_t period = std::max(milliseconds, SHORTEST_PERIOD);
    m_timers.push_back({window, id, period, nowMilliseconds() + period, callback});
}

bool Timers::kill(HWND window, std::uintptr_t id) {
    return std::erase_if(m_timers, [=](const Timer& timer) {
               return timer.window == window && timer.id == id;
           }) > 0;
}

void Timers::killAllOf(HWND window) {
    std::erase_if(m_timers, [=](const Timer& timer) { return timer.window == window; });
}

bool Timers::hasCallback(HWND window, std::uintptr_t id, TIMERPROC callback) const {
    return std::any_of(m_timers.begin(), m_timers.end(), [=](const Timer& timer) {
        return timer.window == window && timer.id == id && timer.callback == callback;
    });
}

std::optional<std::int64_t> Timers::nextDue() const {
    const auto next =
        std::min_element(m_timers.begin(), m_timers.end(),
                         [](const Timer& a, const Timer& b) { return a.due < b.due; });
    return next == m_timers.end() ? std::nullopt : std::optional(next->due);
}

std::optional<Timers::Due> Timers::takeDue(std::int64_t now, HWND window, bool keep) {
    Timer* due = nullptr;
    for (Timer& timer : m_timers) {
        const bool fits = timer.due <= now && (window == 0 || timer.window == window);
        if (fits && (due == nullptr || timer.due < due->due)) {
            due = &timer;
        }
    }
    if (due == nullptr) {
        return std::nullopt;
    }
    if (!keep) {
        due->due += ((now - due->due) / due->period + 1) * due->period;
    }
    return Due{due->window, due->id, due->callback};
}

}  // namespace juntora::desktop
