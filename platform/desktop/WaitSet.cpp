#include "platform/desktop/WaitSet.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>

#include "platform/desktop/Doorbell.h"

namespace juntora::desktop {
namespace {

constexpr int EVENTS_AT_ONCE = 16;
/// A FIFO holds 65,536 strokes; a wake is rarely more than a few of them.
constexpr int WAKES_BETWEEN_DRAINS = 1024;

bool add(int set, int descriptor) {
    epoll_event event{};
    event.events = EPOLLIN | EPOLLET;
    event.data.fd = descriptor;
    return epoll_ctl(set, EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void closeIfOpen(int descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
    }
}

}  // namespace

WaitSet::~WaitSet() {
    closeIfOpen(m_set);
    closeIfOpen(m_fifo);
    closeIfOpen(m_timer);
}

bool WaitSet::open(int folder, std::uint32_t thread) {
    if (m_set >= 0) {
        return true;
    }
    char name[24];
    fifoName(thread, name);
    if (mkfifoat(folder, name, 0600) != 0 && errno != EEXIST) {
        return false;
    }
    m_fifo = openat(folder, name, O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    m_timer = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    const int set = epoll_create1(EPOLL_CLOEXEC);
    if (m_fifo < 0 || m_timer < 0 || set < 0 || !add(set, m_fifo) || !add(set, m_timer)) {
        closeIfOpen(set);
        return false;
    }
    m_set = set;
    return true;
}

bool WaitSet::wait(int milliseconds) {
    epoll_event events[EVENTS_AT_ONCE];
    const int count = epoll_wait(m_set, events, EVENTS_AT_ONCE, milliseconds);
    for (int i = 0; i < count; ++i) {
        const int descriptor = events[i].data.fd;
        if (descriptor == m_fifo) {
            if (++m_fifoWakes % WAKES_BETWEEN_DRAINS == 0) {
                drainFifo();
            }
        } else if (descriptor == m_timer) {
            m_due.reset();  // It has rung once, and is set anew for the next tick.
        } else if (const auto found = m_watchers.find(descriptor); found != m_watchers.end()) {
            const Watcher watcher = found->second;
            watcher.ready(watcher.context);
        }
    }
    return count > 0;
}

void WaitSet::wakeAt(std::optional<std::int64_t> due) {
    if (due == m_due || m_timer < 0) {
        return;
    }
    itimerspec setting{};
    if (due) {
        setting.it_value.tv_sec = *due / 1000;
        setting.it_value.tv_nsec = *due % 1000 * 1'000'000;
    }
    timerfd_settime(m_timer, TFD_TIMER_ABSTIME, &setting, nullptr);
    m_due = due;
}

bool WaitSet::watch(int descriptor, void (*ready)(void*), void* context) {
    m_watchers[descriptor] = {ready, context};
    if (!add(m_set, descriptor) && errno != EEXIST) {
        m_watchers.erase(descriptor);
        return false;
    }
    return true;
}

void WaitSet::unwatch(int descriptor) {
    if (m_watchers.erase(descriptor) > 0) {
        epoll_ctl(m_set, EPOLL_CTL_DEL, descriptor, nullptr);
    }
}

void WaitSet::drainFifo() {
    char strokes[4096];
    while (read(m_fifo, strokes, sizeof strokes) == static_cast<ssize_t>(sizeof strokes)) {
    }
}

}  // namespace juntora::desktop
