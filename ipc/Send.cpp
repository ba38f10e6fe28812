// Sending a record, with or without an answer.
#include <algorithm>
#include <cstring>

#include "ipc/BlockUse.h"
#include "ipc/Spill.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"

namespace juntora {
namespace {

constexpr int NO_ANSWER = -1;

bool canReachHub() {
    // The hub knows its own window; everybody else looks for it each time, since it may have gone.
    return ipcMessageId != 0 && (ipcSelfId == 0 || ipcFindHub() != 0);
}

/// Takes a slot and fills it; null when none can be had.
IpcMessage* newRecord(const SlotText& text, HWND target, int replyLength) {
    IpcMessage* record = ipcMemAlloc(sizeof(IpcMessage));
    if (record != nullptr) {
        record->target = target;
        record->sender = ipcSelfId;
        record->replyLength = replyLength;
        record->link = 0;
        text.putInto(record);
    }
    return record;
}

int deliver(HWND to, int opcode, const IpcMessage* record) {
    const auto wParam = static_cast<WPARAM>(opcode & 0xFFFF);
    return static_cast<int>(SendMessageA(to, ipcMessageId, wParam, ipcMemOffset(record)));
}

void copyAnswer(const IpcMessage* record, char* reply, int* capacity) {
    const int count = std::min({record->replyLength, IPC_TEXT_FIELD, *capacity});
    if (count > 0) {
        std::memcpy(reply, record->text, static_cast<std::size_t>(count));
        *capacity = count;
    }
}

}  // namespace

int ipcSend(int opcode, const char* text, HWND target, char* reply, int* capacity) {
    if (*capacity < 1 || !canReachHub()) {
        return 0;
    }
    const SlotText outgoing(text);
    if (!outgoing.isSendable()) {
        return 0;
    }
    const BlockUse use;
    int result = 0;
    if (IpcMessage* record = newRecord(outgoing, target, *capacity)) {
        result = deliver(target != 0 ? target : ipcHubWindow, opcode, record);
        copyAnswer(record, reply, capacity);
        ipcMemFree(record);
    }
    outgoing.deleteFile();
    return result;
}

int ipcPost(int opcode, const char* text, HWND target) {
    if (!canReachHub()) {
        return 0;
    }
    const SlotText outgoing(text);
    if (!outgoing.isSendable()) {
        return 0;
    }
    const BlockUse use;
    int result = 0;
    if (IpcMessage* record = newRecord(outgoing, target, NO_ANSWER)) {
        result = deliver(ipcHubWindow, opcode, record);
        ipcMemFree(record);
    }
    // Only a record that was carried on has somebody left who will read the file.
    if (target == 0 || result == 0) {
        outgoing.deleteFile();
    }
    return result;
}

}  // namespace juntora
