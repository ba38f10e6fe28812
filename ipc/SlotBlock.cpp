// The block of slots: opening it, and taking and giving back slots.
#include <atomic>

#include "ipc/BlockUse.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {

bool ipcNoMutex = false;

namespace {

constexpr std::size_t SLOTS = sizeof(IpcSlotBlock::isFree);
constexpr std::uintptr_t FIRST_SLOT = offsetof(IpcSlotBlock, slots);
constexpr DWORD MUTEX_WAIT = 5'000;
constexpr int PASSES = 100;
constexpr DWORD TOP_BIT = 0x80000000;

// A full block is waited for without the mutex first, in sleeps that grow up to LONGEST_SLEEP.
constexpr DWORD FIRST_SLEEP = 50;
constexpr DWORD LONGEST_SLEEP = 1'600;
constexpr DWORD POLITE_WAIT = 20'000;

HANDLE s_mutex = nullptr;
HANDLE s_mapping = nullptr;
bool s_isMaker = false;
IpcSlotBlock* s_block = nullptr;
/// An allocation has failed, and no slot has been seen free since.
bool s_isJammed = false;
int s_uses = 0;
bool s_isToBeClosed = false;

std::atomic_ref<std::uint8_t> flagOf(std::size_t slot) {
    return std::atomic_ref<std::uint8_t>(s_block->isFree[slot]);
}

/// The number of the lowest free slot, SLOTS if there is none.
std::size_t lowestFree() {
    std::size_t slot = 0;
    while (slot < SLOTS && flagOf(slot).load(std::memory_order_relaxed) == 0) {
        ++slot;
    }
    return slot;
}

bool enter() {
    if (ipcNoMutex) {
        return true;
    }
    const DWORD outcome = WaitForSingleObject(s_mutex, MUTEX_WAIT);
    return outcome == WAIT_OBJECT_0 || outcome == WAIT_ABANDONED;
}

void leave() {
    if (!ipcNoMutex) {
        ReleaseMutex(s_mutex);
    }
}

/// Waits a while for a slot of a full block with the mutex free, so that those who have slots can
/// give them back: a fast sender would otherwise lock them out for the length of its passes.
void waitPolitely() {
    DWORD sleep = FIRST_SLEEP;
    for (DWORD slept = 0; lowestFree() == SLOTS && slept < POLITE_WAIT && !s_isJammed;) {
        SleepMicroseconds(sleep);
        slept += sleep;
        sleep = sleep * 2 < LONGEST_SLEEP ? sleep * 2 : LONGEST_SLEEP;
    }
}

/// Dispatches what waits for this thread. False once it is to quit.
bool pumpMessages() {
    MSG message;
    while (PeekMessageA(&message, 0, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(0);
            return false;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    return true;
}

/// Takes the lowest slot that comes free within the passes; null if none does.
IpcMessage* takeSlot() {
    for (int pass = 0; pass < PASSES; ++pass) {
        const std::size_t slot = lowestFree();
        if (slot < SLOTS) {
            flagOf(slot).store(0, std::memory_order_relaxed);
            return &s_block->slots[slot];
        }
        if (!ipcNoMutex) {
            Sleep(1);
        } else if (!pumpMessages() || s_block == nullptr) {
            break;
        }
    }
    return nullptr;
}

/// Makes or opens the mapping and its view.
int mapBlock() {
    if (s_mapping == nullptr) {
        s_mapping = CreateFileMappingA(sizeof(IpcSlotBlock), IPC_BLOCK_NAME);
        s_isMaker = GetLastError() != ERROR_ALREADY_EXISTS;
    }
    if (s_mapping == nullptr) {
        return 0;
    }
    s_block = static_cast<IpcSlotBlock*>(MapViewOfFile(s_mapping, sizeof(IpcSlotBlock)));
    if (s_block == nullptr) {
        return 0;
    }
    for (std::size_t slot = 0; s_isMaker && slot < SLOTS; ++slot) {
        flagOf(slot).store(1, std::memory_order_release);
    }
    return 1;
}

void closeBlock() {
    if (s_block != nullptr) {
        UnmapViewOfFile(s_block);
        s_block = nullptr;
    }
    for (HANDLE* handle : {&s_mapping, &s_mutex}) {
        if (*handle != nullptr) {
            CloseHandle(*handle);
            *handle = nullptr;
        }
    }
}

}  // namespace

BlockUse::BlockUse() { ++s_uses; }

BlockUse::~BlockUse() {
    if (--s_uses == 0 && s_isToBeClosed) {
        s_isToBeClosed = false;
        closeBlock();
    }
}

int ipcMemOpen() {
    s_isToBeClosed = false;
    if (s_block != nullptr) {
        return 1;
    }
    ipcNoMutex = (GetVersion() & TOP_BIT) != 0;
    if (!ipcNoMutex && s_mutex == nullptr) {
        s_mutex = CreateMutexA(false, IPC_MUTEX_NAME);
        if (s_mutex == nullptr) {
            return 0;
        }
    }
    // Behind the mutex nobody opens a block whose maker has not set its flags yet. A maker that
    // dies before it has takes the block with it; without the mutex, whoever had opened it
    // meanwhile would be left with one that is full for ever.
    const bool entered = enter();
    const int opened = mapBlock();
    if (entered) {
        leave();
    }
    return opened;
}

void ipcMemClose() {
    if (s_uses > 0) {
        s_isToBeClosed = true;
    } else {
        closeBlock();
    }
}

IpcMessage* ipcMemAlloc(std::size_t) {
    if (s_block == nullptr) {
        return nullptr;
    }
    waitPolitely();
    if (!enter()) {
        return nullptr;
    }
    IpcMessage* slot = takeSlot();
    leave();
    s_isJammed = slot == nullptr;
    return slot;
}

void ipcMemFree(IpcMessage* slot) {
    const LPARAM offset = ipcMemOffset(slot);
    if (ipcMemAddress(offset) == nullptr || !enter()) {
        return;
    }
    flagOf(static_cast<std::size_t>(slot - s_block->slots)).store(1, std::memory_order_release);
    leave();
}

LPARAM ipcMemOffset(const IpcMessage* slot) {
    return reinterpret_cast<LPARAM>(slot) - reinterpret_cast<LPARAM>(s_block);
}

IpcMessage* ipcMemAddress(LPARAM offset) {
    const auto fromFirst = static_cast<std::uintptr_t>(offset) - FIRST_SLOT;
    const bool isSlot = s_block != nullptr && fromFirst % sizeof(IpcMessage) == 0 &&
                        fromFirst / sizeof(IpcMessage) < SLOTS;
    return isSlot ? &s_block->slots[fromFirst / sizeof(IpcMessage)] : nullptr;
}

}  // namespace juntora
