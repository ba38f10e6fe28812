#include "platform/desktop/Doorbell.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "platform/desktop/Futex.h"

namespace juntora::desktop {

void fifoName(std::uint32_t thread, char (&name)[24]) {
    std::snprintf(name, sizeof name, "queue-%u", thread);
}

BellRopes::~BellRopes() {
    for (const Rope& rope : m_ropes) {
        if (rope.descriptor >= 0) {
            close(rope.descriptor);
        }
    }
}

void BellRopes::pull(int folder, std::uint32_t thread) {
    Rope& rope = m_ropes[thread % ROPES];
    if (rope.descriptor >= 0 && rope.thread != thread) {
        close(rope.descriptor);
        rope.descriptor = -1;
    }
    if (rope.descriptor < 0) {
        char name[24];
        fifoName(thread, name);
        // Open for reading too: writing to a FIFO that has lost its reader would be a signal.
        rope.descriptor = openat(folder, name, O_RDWR | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
        rope.thread = thread;
    }
    if (rope.descriptor >= 0) {
        const char stroke = 1;
        [[maybe_unused]] const auto written = write(rope.descriptor, &stroke, 1);
    }
}

void ring(std::atomic<std::uint32_t>& bell, std::uint32_t seen, int folder, std::uint32_t thread,
          BellRopes& ropes) {
    if ((seen & BELL_STATE_BITS) == IN_FUTEX) {
        futexClearBitsAndWake(&bell, BELL_STATE_BITS);
    } else {
        ropes.pull(folder, thread);
        bell.compare_exchange_strong(seen, seen & ~BELL_STATE_BITS);
    }
}

}  // namespace juntora::desktop
