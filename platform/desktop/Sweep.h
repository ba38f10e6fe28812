// Clearing away what the dead have left.
#pragma once

#include <cstdint>

#include "platform/desktop/Attachment.h"

namespace juntora::desktop {

/// Takes a free thread slot for the calling thread, which from then on holds its life mutex, and
/// stores its generation. NONE when 2,048 threads have queues. The caller holds the lock.
std::uint32_t claimThread(Attachment& desktop, std::uint32_t* generation);
/// Gives the calling thread's slot back with its windows. The caller holds the lock.
void releaseThread(Attachment& desktop, std::uint32_t thread);

/// If the slot's thread has died: unmakes its windows, frees the slot, and does the same for all of
/// its process if that is gone. May be cut off anywhere and done again by the next one. The caller
/// holds the lock.
void sweepThread(Attachment& desktop, std::uint32_t thread);
/// The same for each process that is gone.
void sweepAll(Attachment& desktop);

/// Takes the lock and sweeps the thread, once it has been seen dead.
void sweepDeadThread(std::uint32_t thread);

}  // namespace juntora::desktop
