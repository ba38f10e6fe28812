// The kernel's waits on words of shared memory.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

namespace juntora::desktop {

/// A word, and the value at which it is worth sleeping.
struct FutexWait {
    std::atomic<std::uint32_t>* word;
    std::uint32_t value;
};

/// Sleeps until one of up to two words is woken, or one does not hold its value, or the time is up
/// (milliseconds). `second` may have a null word. Wakes without cause occur.
void futexWait(FutexWait first, FutexWait second, std::uint32_t milliseconds);

/// The same for one word, until the monotonic clock's milliseconds are at `due`; none for ever.
void futexWaitUntil(FutexWait wait, std::optional<std::int64_t> due);

void futexWakeAll(std::atomic<std::uint32_t>* word);

/// Clears bits of a word and wakes its sleeper, in one step that a death cannot divide.
void futexClearBitsAndWake(std::atomic<std::uint32_t>* word, std::uint32_t bits);

}  // namespace juntora::desktop
