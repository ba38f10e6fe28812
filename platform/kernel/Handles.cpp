#include "platform/kernel/Handles.h"

#include <unistd.h>

namespace juntora::kernel {
namespace {

constexpr std::uintptr_t MAX_HANDLES = 4096;
/// Values are multiples of four from four on, so that null is no handle.
constexpr std::uintptr_t VALUE_STEP = 4;

Handle g_handles[MAX_HANDLES];

}  // namespace

Handle* reserveHandle() {
    for (Handle& entry : g_handles) {
        HandleKind closed = HandleKind::CLOSED;
        if (entry.kind.compare_exchange_strong(closed, HandleKind::RESERVED)) {
            entry.descriptor = -1;
            entry.owned = 0;
            entry.owner = 0;
            return &entry;
        }
    }
    return nullptr;
}

Handle* anyHandle(HANDLE handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    const std::uintptr_t index = value / VALUE_STEP - 1;
    if (value == 0 || value % VALUE_STEP != 0 || index >= MAX_HANDLES) {
        return nullptr;
    }
    Handle& entry = g_handles[index];
    const HandleKind kind = entry.kind.load(std::memory_order_acquire);
    return kind == HandleKind::CLOSED || kind == HandleKind::RESERVED ? nullptr : &entry;
}

Handle* handleOf(HANDLE handle, HandleKind kind) {
    Handle* entry = anyHandle(handle);
    return entry != nullptr && entry->kind.load(std::memory_order_relaxed) == kind ? entry
                                                                                   : nullptr;
}

HANDLE valueOf(const Handle* entry) {
    const auto index = static_cast<std::uintptr_t>(entry - g_handles);
    return reinterpret_cast<HANDLE>((index + 1) * VALUE_STEP);
}

void forgetObjectsInForkedChild() {
    for (Handle& entry : g_handles) {
        switch (entry.kind.load()) {
            case HandleKind::MUTEX:
            case HandleKind::SEMAPHORE:
            case HandleKind::MAPPING:
                if (entry.descriptor >= 0) {
                    close(entry.descriptor);
                }
                entry.kind = HandleKind::CLOSED;
                break;
            default:
                break;
        }
    }
}

}  // namespace juntora::kernel
