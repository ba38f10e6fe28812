// Who lives. One load a thread, because the kernel marks the word of a robust mutex whose owner has
// died; a lock on a byte of the desktop's lock file a process, which is asked in sweeps alone.
#pragma once

#include <linux/futex.h>

#include "platform/desktop/Layout.h"

namespace juntora::desktop {

/// The word of a thread's life mutex as the kernel's robust-futex interface has it: owner, and the
/// bits FUTEX_WAITERS and FUTEX_OWNER_DIED.
inline std::atomic<std::uint32_t>& lifeWord(ThreadSlot& thread) {
    static_assert(sizeof(thread.life.__data.__lock) == sizeof(std::atomic<std::uint32_t>));
    return reinterpret_cast<std::atomic<std::uint32_t>&>(thread.life.__data.__lock);
}

/// Whether the slot is still that thread's and the thread lives.
inline bool threadLives(ThreadSlot& thread, std::uint32_t generation) {
    const std::uint32_t word = lifeWord(thread).load(std::memory_order_acquire);
    return (word & FUTEX_TID_MASK) != 0 && (word & FUTEX_OWNER_DIED) == 0 &&
           thread.generation.load(std::memory_order_acquire) == generation;
}

}  // namespace juntora::desktop
