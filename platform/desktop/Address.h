// From a window's handle to the thread that owns it.
#pragma once

#include "platform/desktop/Life.h"
#include "platform/desktop/Queue.h"
#include "platform/desktop/WindowIndex.h"

namespace juntora::desktop {

struct Address {
    std::uint32_t thread;
    std::uint32_t generation;
};

/// The living thread that owns the window; false if there is none. Loads alone.
inline bool addressOf(Segment& segment, HWND window, Address* address) {
    if (!isCurrent(segment, window)) {
        return false;
    }
    const WindowSlot& slot = segment.windows[indexOf(window)];
    address->thread = slot.thread.load(std::memory_order_relaxed) % MAX_THREADS;
    address->generation = slot.threadGeneration.load(std::memory_order_relaxed);
    return threadLives(segment.threads[address->thread], address->generation) &&
           isCurrent(segment, window);
}

/// The same; what is found dead is swept away.
bool addressOrSweep(Segment& segment, HWND window, Address* address);

}  // namespace juntora::desktop
