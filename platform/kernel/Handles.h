// What this process's HANDLEs stand for.
#pragma once

#include <atomic>
#include <cstdint>

#include "platform/types.h"

namespace juntora::kernel {

enum class HandleKind : std::uint32_t { CLOSED, RESERVED, MUTEX, SEMAPHORE, MAPPING, PROCESS };

struct Handle {
    std::atomic<HandleKind> kind;
    std::uint32_t object;  ///< Named objects: index in the segment.
    std::uint32_t hold;    ///< Named objects: index of the hold; processes: start record.
    int descriptor;        ///< Mapping: its file. Process: its pidfd.
    int processId;
    std::atomic<std::uint32_t> owned;  ///< Mutex: how often its present owner has taken it.
    std::atomic<std::uint64_t> owner;  ///< Mutex: which thread of this process owns it, 0 for none.
    std::uint64_t startToken;
};

/// A free entry, marked RESERVED; null when 4,096 handles are open. The caller fills it and sets
/// its kind last.
Handle* reserveHandle();
/// The entry that a HANDLE stands for, null if it is none of that kind. No lock: a HANDLE that is
/// closed while another thread uses it is that program's error.
Handle* handleOf(HANDLE handle, HandleKind kind);
/// The same whatever its kind.
Handle* anyHandle(HANDLE handle);
HANDLE valueOf(const Handle* entry);

/// Closes what stands for named objects, in a child that was forked without starting a program: the
/// holds behind them are its parent's.
void forgetObjectsInForkedChild();

}  // namespace juntora::kernel
