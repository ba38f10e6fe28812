// Word of every change to the desktop, no faster than it can be shown.
#pragma once

#include <atomic>
#include <functional>
#include <thread>

#include <QSemaphore>

namespace juntora::screen {

/// Calls `changed` on the toolkit's thread when something has changed, and once a second in any
/// case (programs that were killed say nothing). The next call comes when the last one has been
/// dealt with, and not within the time of a frame: changes in between are skipped, never queued.
class DesktopWatch {
public:
    explicit DesktopWatch(std::function<void()> changed);
    ~DesktopWatch();
    DesktopWatch(const DesktopWatch&) = delete;
    DesktopWatch& operator=(const DesktopWatch&) = delete;

private:
    void run();

    std::function<void()> m_changed;
    std::atomic<bool> m_hasEnded{false};
    QSemaphore m_dealtWith;
    std::thread m_thread;
};

}  // namespace juntora::screen
