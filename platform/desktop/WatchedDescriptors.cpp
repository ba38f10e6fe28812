#include "platform/desktop/WatchedDescriptors.h"

#include <pthread.h>
#include <signal.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "platform/desktop/CallOut.h"
#include "platform/desktop/Doorbell.h"
#include "platform/desktop/Futex.h"

namespace juntora::desktop {
namespace {

constexpr int EVENTS_AT_ONCE = 16;

bool control(int set, int operation, int descriptor, std::uint32_t events) {
    epoll_event event{};
    event.events = events;
    event.data.fd = descriptor;
    return epoll_ctl(set, operation, descriptor, &event) == 0;
}

/// Signals are for the program's own threads.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t m_before{};
};

}  // namespace

WatchedDescriptors::~WatchedDescriptors() {
    if (m_lookout.joinable()) {
        eventfd_write(m_end, 1);
        m_lookout.join();
    }
    for (const int descriptor : {m_set, m_alarm, m_end}) {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
}

bool WatchedDescriptors::openSet() {
    if (m_set < 0) {
        m_set = epoll_create1(EPOLL_CLOEXEC);
    }
    return m_set >= 0;
}

bool WatchedDescriptors::watch(int descriptor, void (*ready)(void*), void* context) {
    if (!openSet()) {
        return false;
    }
    if (!control(m_set, EPOLL_CTL_ADD, descriptor, EPOLLIN | EPOLLET) && errno != EEXIST) {
        return false;
    }
    m_watchers[descriptor] = {ready, context};
    return true;
}

void WatchedDescriptors::unwatch(int descriptor) {
    if (m_watchers.erase(descriptor) > 0) {
        epoll_ctl(m_set, EPOLL_CTL_DEL, descriptor, nullptr);
    }
}

void WatchedDescriptors::callReady() {
    if (m_set < 0) {
        return;
    }
    m_isReady = false;
    epoll_event events[EVENTS_AT_ONCE];
    const int count = epoll_wait(m_set, events, EVENTS_AT_ONCE, 0);
    for (int i = 0; i < count; ++i) {
        if (const auto found = m_watchers.find(events[i].data.fd); found != m_watchers.end()) {
            const Watcher watcher = found->second;
            callOut("descriptor", static_cast<std::uint64_t>(events[i].data.fd),
                    [&] { watcher.ready(watcher.context); });
        }
    }
    if (m_alarm >= 0) {
        control(m_alarm, EPOLL_CTL_MOD, m_set, EPOLLIN | EPOLLONESHOT);
    }
}

bool WatchedDescriptors::openAlarm() {
    const int alarm = epoll_create1(EPOLL_CLOEXEC);
    const int end = eventfd(0, EFD_CLOEXEC);
    if (alarm < 0 || end < 0 || !control(alarm, EPOLL_CTL_ADD, m_set, EPOLLIN | EPOLLONESHOT) ||
        !control(alarm, EPOLL_CTL_ADD, end, EPOLLIN)) {
        close(alarm);
        close(end);
        return false;
    }
    m_alarm = alarm;
    m_end = end;
    return true;
}

void WatchedDescriptors::lookAfter() {
    if (m_watchers.empty() || m_alarm >= 0 || !openAlarm()) {
        return;
    }
    const BlockedSignals blocked;
    try {
        m_lookout = std::thread([this] { runLookout(); });
    } catch (const std::system_error&) {
        close(m_alarm);
        close(m_end);
        m_alarm = -1;  // No thread to be had now; the next sleep tries again.
        m_end = -1;
    }
}

void WatchedDescriptors::runLookout() {
    for (;;) {
        epoll_event event{};
        if (epoll_wait(m_alarm, &event, 1, -1) != 1) {
            continue;
        }
        if (event.data.fd == m_end) {
            return;
        }
        m_isReady = true;
        if ((m_bell.load() & BELL_STATE_BITS) == IN_FUTEX) {
            futexClearBitsAndWake(&m_bell, BELL_STATE_BITS);
        }
    }
}

}  // namespace juntora::desktop
