// The notice that a watched tool has gone.
#pragma once

#include <optional>
#include <string>

#include "ipc/IpcMessage.h"
#include "platform/types.h"

namespace juntora {

struct Departure {
    bool isOrderly;
    HWND id;
    std::string name;
};

/// Nothing for any other record.
std::optional<Departure> parseDeparture(int opcode, const IpcMessage& record);

}  // namespace juntora
