#include "platform/kernel/signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>

#include "platform/desktop/message.h"

namespace juntora {
namespace {

int s_signalled = -1;

// Only what is safe inside a signal handler.
void onSignal(int) {
    const int error = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = write(s_signalled, &one, sizeof one);
    errno = error;
}

/// Unlike ignoring the signal, a handler is not inherited by programs that are started.
void doNothing(int) {}

void handle(int signal, void (*handler)(int), int flags) {
    struct sigaction before {};
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART | flags;
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

}  // namespace

bool QuitOnSignals() {
    if (s_signalled < 0) {
        s_signalled = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    }
    if (s_signalled < 0 || !WatchDescriptor(
                               s_signalled, [](void*) { PostQuitMessage(0); }, nullptr)) {
        return false;
    }
    constexpr int ENDING[] = {SIGINT, SIGTERM, SIGHUP};
    for (const int signal : ENDING) {
        handle(signal, onSignal, static_cast<int>(SA_RESETHAND));
    }
    handle(SIGPIPE, doNothing, 0);
    return true;
}

}  // namespace juntora
