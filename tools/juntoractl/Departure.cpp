#include "tools/juntoractl/Departure.h"

#include <cstdio>

namespace juntora {

std::optional<Departure> parseDeparture(int opcode, const IpcMessage& record) {
    int orderly = 0;
    HWND id = 0;
    int nameAt = 0;
    if (opcode != IPC_DEPARTED ||
        std::sscanf(record.text, "%d,%x,%n", &orderly, &id, &nameAt) != 2 || nameAt == 0) {
        return std::nullopt;
    }
    return Departure{orderly != 0, id, record.text + nameAt};
}

}  // namespace juntora
