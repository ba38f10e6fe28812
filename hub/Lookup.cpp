// What tools ask about one another.
#include "hub/RecordText.h"
#include "hub/TextScan.h"
#include "hub/ipcDes.h"

namespace juntora {
namespace {

AppEntry* rowOfWindow(const AppTable& table, HWND window) {
    return window ? table.findNewest(window, nullptr, false) : nullptr;
}

}  // namespace

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
    const AppEntry* row = rowOfWindow(*m_pTable, window);
    if (!row || !hasReplyRoom(*record)) {
        return 0;
    }
    writeReply(record, row->name);
    return 1;
}

int ipcDes::onIsAlive(IpcMessage* record) {
    const HWND window = scanWindow(RecordText(*record).view());
    return rowOfWindow(*m_pTable, window) ? 1 : 0;
}

}  // namespace juntora
