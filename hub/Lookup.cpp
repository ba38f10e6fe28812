// What tools ask about one another.
#include "hub/RecordText.h"
#include "hub/ipcDes.h"
#include "ipc/TextScan.h"

namespace juntora {

HWND ipcDes::findToolWindow(const char* name) const {
    const bool exact = std::string_view(name).find(';') != std::string_view::npos;
    const AppEntry* row = m_pTable->findNewest(0, name, exact);
    return row ? row->window : 0;
}

int ipcDes::onFindApp(IpcMessage* record) {
    return static_cast<int>(findToolWindow(RecordText(*record).c_str()));
}

int ipcDes::onAppName(IpcMessage* record) {
    const HWND window = scanWindow(RecordText(*record).view());
    const AppEntry* row = m_pTable->rowOfWindow(window);
    if (!row || !hasReplyRoom(*record)) {
        return 0;
    }
    writeReply(record, row->name);
    return 1;
}

int ipcDes::onIsAlive(IpcMessage* record) {
    const HWND window = scanWindow(RecordText(*record).view());
    return m_pTable->rowOfWindow(window) ? 1 : 0;
}

}  // namespace juntora
