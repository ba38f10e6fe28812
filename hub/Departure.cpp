// How tools go, and who is told of it.
#include <cstdio>

#include "hub/RecordText.h"
#include "hub/ipcDes.h"
#include "ipc/TextScan.h"

namespace juntora {
namespace {

std::string departureNotice(const AppEntry& row, int orderly) {
    char head[32];
    std::snprintf(head, sizeof head, "%d,%x,", orderly ? 1 : 0, row.window);
    return head + row.name;
}

}  // namespace

int ipcDes::onWatch(IpcMessage* record) {
    const RecordText text(*record);
    const char* name = nullptr;
    HWND window = 0;
    if (text.view().starts_with('a')) {
        name = text.c_str() + 1;
    } else if (text.view().starts_with('x')) {
        window = scanWindow(text.view().substr(1));
    }
    if (!name && !window) {
        return 0;
    }

    AppEntry* row = m_pTable->findNewest(window, name, true);
    if (!row) {
        row = m_pTable->findNewest(window, name, false);
    }
    if (!row) {
        return 0;
    }
    row->addWatcher(record->sender);
    return 1;
}

void ipcDes::notifyWatchers(AppEntry* row, int orderly) {
    const WatchList watchers = std::move(row->watchers);
    if (!watchers) {
        return;
    }
    const std::string notice = departureNotice(*row, orderly);
    watchers->forEach([&](const void* word) {
        const HWND watcher = *static_cast<const HWND*>(word);
        if (m_pTable->rowOfWindow(watcher)) {
            ipcPost(IPC_DEPARTED, notice.c_str(), watcher);
        }
    });
}

void ipcDes::removeWindowRows(HWND window) {
    if (!window) {
        return;  // To the table's search it would be any window.
    }
    AppList::Cursor cursor = m_pTable->atHead();
    while (AppEntry* row = m_pTable->findRow(&cursor, window, nullptr, false)) {
        removeActivityLine(window, &row->file);
        notifyWatchers(row, 1);
        m_pTable->removeRow(&cursor);
        // The rows above the cursor are not of this window, and the table finds the rest faster
        // from its head than by a walk.
        cursor = m_pTable->atHead();
    }
}

int ipcDes::onSignOff(IpcMessage* record) {
    removeWindowRows(record->sender);
    return 1;
}

}  // namespace juntora
