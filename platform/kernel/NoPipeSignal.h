// Writing to a pipe whose reader may have gone.
#pragma once

#include <signal.h>
#include <time.h>

namespace juntora::kernel {

/// Keeps the signal of a broken pipe from this thread for as long as it lives.
class NoPipeSignal {
public:
    NoPipeSignal() {
        sigemptyset(&m_signal);
        sigaddset(&m_signal, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    }
    ~NoPipeSignal() {
        if (sigismember(&m_before, SIGPIPE) == 0) {
            const timespec atOnce{};
            sigtimedwait(&m_signal, nullptr, &atOnce);
        }
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
    }
    NoPipeSignal(const NoPipeSignal&) = delete;
    NoPipeSignal& operator=(const NoPipeSignal&) = delete;

private:
    sigset_t m_signal{};
    sigset_t m_before{};
};

}  // namespace juntora::kernel
