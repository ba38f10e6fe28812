// What the calls of the requests have in common.
#pragma once

#include "ipc/TextBuilder.h"
#include "ipc/ipc.h"

namespace juntora {

using RequestText = TextBuilder<IPC_TEXT_LIMIT>;

/// Sends a request to the hub of which the result is all that matters; 0 when the text is too long.
inline int sendRequest(int opcode, RequestText& text) {
    char unread[2];
    int capacity = sizeof unread;
    return text.get() != nullptr ? ipcSend(opcode, text.get(), 0, unread, &capacity) : 0;
}

}  // namespace juntora
