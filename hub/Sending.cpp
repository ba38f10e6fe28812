// Records that the hub itself sends. Each goes by the hub's own window, as a tool's would, so that
// the bridge sees it.
#include <string>

#include "hub/SelfId.h"
#include "hub/ipcDes.h"

namespace juntora {

int ipcDes::sendStatusAs(HWND from, HWND to, const char* text, int code) {
    const ScopedSelfId self(from);
    // As ipcStatus does it, for texts of any length.
    return ipcPost(IPC_STATUS, (std::string(text) + " " + std::to_string(code)).c_str(), to);
}

int ipcDes::sendRequestAs(HWND from, int opcode, const char* text, HWND to) {
    const ScopedSelfId self(from);
    return ipcPost(opcode, text, to);
}

void ipcDes::broadcast(int opcode, const char* text, int knownOnly) {
    AppList::Cursor cursor = m_pTable->atHead();
    for (const AppEntry* row = m_pTable->at(&cursor); row; row = m_pTable->next(&cursor)) {
        if (row->primary && (!knownOnly || row->toolIndex >= 0)) {
            ipcPost(opcode, text, row->window);
        }
    }
}

}  // namespace juntora
