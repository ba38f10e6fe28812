// The receiving side: taking a window message apart, and giving back what it brought.
#include <cstring>

#include "ipc/PostedRecords.h"
#include "ipc/Spill.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"

namespace juntora {
namespace {

constexpr int POSTED_COPY = 0;
constexpr int TO_BE_RELEASED = -1;
/// What of an expanded copy returns to the slot: the head and the first word of the text.
constexpr std::size_t RETURNED_BYTES = offsetof(IpcMessage, text) + 4;

bool isClient() { return ipcSelfId != 0; }

/// The record that the handler gets: the slot itself, or a copy with the text from its file.
IpcMessage* expand(IpcMessage* slot) {
    IpcMessage* copy = newExpandedCopy(slot);
    if (copy != nullptr) {
        copy->link = static_cast<std::uint32_t>(ipcMemOffset(slot));
        return copy;
    }
    // Without room for the copy the text is lost; the path must not be taken for it.
    slot->text[0] = '\0';
    slot->spillLength = 0;
    return slot;
}

void releaseCopy(IpcMessage* copy) {
    IpcMessage* slot = ipcMemAddress(copy->link);
    if (slot != nullptr && copy->replyLength == TO_BE_RELEASED) {
        ipcMemFree(slot);
    } else if (slot != nullptr) {
        std::memcpy(slot, copy, RETURNED_BYTES);
        slot->link = 0;
    }
    deleteExpandedCopy(copy);
}

}  // namespace

int ipcReceive(UINT message, WPARAM wParam, LPARAM lParam, IpcMessage** record, int* opcode) {
    if (message != ipcMessageId || ipcMessageId == 0) {
        return 0;
    }
    IpcMessage* slot = ipcMemAddress(lParam);
    if (slot == nullptr) {
        return 0;
    }
    // No sender that keeps to the limit gets as far as this byte.
    if (slot->text[IPC_TEXT_FIELD - 1] != '\0') {
        slot->text[IPC_TEXT_FIELD - 1] = '\0';
    }
    const bool isPostedCopy = slot->replyLength == POSTED_COPY;
    IpcMessage* given = isClient() && slot->spillLength >= 1 ? expand(slot) : slot;
    if (isPostedCopy) {
        given->replyLength = TO_BE_RELEASED;
    }
    *record = given;
    *opcode = static_cast<int>(wParam & 0xFFFF);
    return 1;
}

void ipcRelease(IpcMessage* record) {
    if (record == nullptr) {
        return;
    }
    if (isExpandedCopy(record)) {
        releaseCopy(record);
    } else if (isClient() && ipcMemAddress(ipcMemOffset(record)) != nullptr &&
               record->replyLength == TO_BE_RELEASED) {
        ipcMemFree(record);
    }
}

bool takePostedRecord(IpcMessage** record, int* opcode) {
    MSG message;
    while (ipcMessageId != 0 && PeekMessageA(&message, 0, ipcMessageId, ipcMessageId, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        if (ipcReceive(message.message, message.wParam, message.lParam, record, opcode)) {
            return true;
        }
    }
    return false;
}

int ipcPeekExpected(HWND sender, int opcode, const char* prefix) {
    IpcMessage* record = nullptr;
    int arrived = 0;
    if (!takePostedRecord(&record, &arrived)) {
        return 0;
    }
    const bool isExpected = record->sender == sender && arrived == opcode &&
                            std::strncmp(record->text, prefix, std::strlen(prefix)) == 0;
    deleteExpandedCopy(record);
    return isExpected ? 1 : 0;
}

}  // namespace juntora
