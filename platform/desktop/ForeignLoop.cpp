#include "platform/desktop/ForeignLoop.h"

#include <fcntl.h>
#include <sys/epoll.h>
#include <sys/stat.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>

#include "platform/desktop/Doorbell.h"

namespace juntora::desktop {
namespace {

bool add(int set, int descriptor) {
    epoll_event event{};
    event.events = EPOLLIN;
    event.data.fd = descriptor;
    return epoll_ctl(set, EPOLL_CTL_ADD, descriptor, &event) == 0;
}

void closeIfOpen(int descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
    }
}

void drain(int descriptor) {
    char bytes[4096];
    while (read(descriptor, bytes, sizeof bytes) == static_cast<ssize_t>(sizeof bytes)) {
    }
}

}  // namespace

ForeignLoop::~ForeignLoop() {
    closeIfOpen(m_set);
    closeIfOpen(m_fifo);
    closeIfOpen(m_timer);
}

bool ForeignLoop::open(int folder, std::uint32_t thread) {
    if (m_set >= 0) {
        return true;
    }
    char name[24];
    fifoName(thread, name);
    if (mkfifoat(folder, name, 0600) != 0 && errno != EEXIST) {
        return false;
    }
    const int fifo = openat(folder, name, O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    const int timer = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    const int set = epoll_create1(EPOLL_CLOEXEC);
    if (fifo < 0 || timer < 0 || set < 0 || !add(set, fifo) || !add(set, timer)) {
        closeIfOpen(fifo);
        closeIfOpen(timer);
        closeIfOpen(set);
        return false;
    }
    m_fifo = fifo;
    m_timer = timer;
    m_set = set;
    return true;
}

void ForeignLoop::include(int watchedSet) {
    if (watchedSet != m_included && add(m_set, watchedSet)) {
        m_included = watchedSet;
    }
}

void ForeignLoop::wakeAt(std::optional<std::int64_t> due) {
    if (due == m_due) {
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

void ForeignLoop::wakeNow() {
    const char stroke = 1;
    [[maybe_unused]] const auto written = write(m_fifo, &stroke, 1);
}

void ForeignLoop::clear() {
    drain(m_fifo);
    char ticks[8];
    if (read(m_timer, ticks, sizeof ticks) > 0) {
        m_due.reset();  // It has rung once, and is set anew for the next tick.
    }
}

}  // namespace juntora::desktop
