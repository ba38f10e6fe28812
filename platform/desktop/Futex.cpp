#include "platform/desktop/Futex.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <climits>

namespace juntora::desktop {

void futexWait(FutexWait first, FutexWait second, std::uint32_t milliseconds) {
    timespec deadline{};
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += milliseconds / 1000;
    deadline.tv_nsec += static_cast<long>(milliseconds % 1000) * 1'000'000;
    if (deadline.tv_nsec >= 1'000'000'000) {
        ++deadline.tv_sec;
        deadline.tv_nsec -= 1'000'000'000;
    }
    futex_waitv waits[2] = {};
    waits[0].val = first.value;
    waits[0].uaddr = reinterpret_cast<std::uintptr_t>(first.word);
    waits[0].flags = FUTEX_32;
    waits[1].val = second.value;
    waits[1].uaddr = reinterpret_cast<std::uintptr_t>(second.word);
    waits[1].flags = FUTEX_32;
    syscall(SYS_futex_waitv, waits, second.word == nullptr ? 1 : 2, 0, &deadline, CLOCK_MONOTONIC);
}

void futexWaitUntil(FutexWait wait, std::optional<std::int64_t> due) {
    timespec deadline{};
    if (due) {
        deadline.tv_sec = *due / 1000;
        deadline.tv_nsec = *due % 1000 * 1'000'000;
    }
    syscall(SYS_futex, wait.word, FUTEX_WAIT_BITSET, wait.value, due ? &deadline : nullptr, nullptr,
            FUTEX_BITSET_MATCH_ANY);
}

void futexWakeAll(std::atomic<std::uint32_t>* word) {
    syscall(SYS_futex, word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

void futexClearBitsAndWake(std::atomic<std::uint32_t>* word, std::uint32_t bits) {
    // The comparison picks a second wake of the same word, which has no second sleeper.
    const std::uint32_t operation = FUTEX_OP(FUTEX_OP_ANDN, bits, FUTEX_OP_CMP_EQ, 0xFFF);
    syscall(SYS_futex, word, FUTEX_WAKE_OP, 1, 0, word, operation);
}

}  // namespace juntora::desktop
