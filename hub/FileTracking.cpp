// Who holds which file. The hub locks nothing: a grant is a row of the table, whatever is on the
// disk.
#include <cstdio>

#include "hub/FileRequest.h"
#include "hub/RecordText.h"
#include "hub/ipcDes.h"

namespace juntora {
namespace {

constexpr std::uint32_t ACCESS_READ = 1;
constexpr std::uint32_t ACCESS_BOTH = 3;

/// Of a request that asks whether a file may be had, when it names none, or no access, or comes
/// from a tool without a row: 0 would say that it may.
constexpr int NOT_TO_BE_HAD = -1;

bool isAccess(std::int32_t number) {
    return number > 0 && static_cast<std::uint32_t>(number) <= ACCESS_BOTH;
}

/// A file and an access, from the text of a request.
struct AccessRequest {
    explicit AccessRequest(const RecordText& text) {
        const FileRequest request(text.view());
        if (request.isComplete && isAccess(request.number)) {
            file = PathName(request.file.c_str());
            access = static_cast<std::uint32_t>(request.number);
        }
    }
    bool isUsable() const { return !file.isEmpty(); }

    PathName file;
    std::uint32_t access = 0;
};

bool areReaders(std::uint32_t access, const AppEntry& row) {
    return access == ACCESS_READ && row.access == ACCESS_READ;
}

}  // namespace

int ipcDes::onFileOpen(IpcMessage* record) {
    const AccessRequest request{RecordText(*record)};
    const HWND sender = record->sender;
    const AppEntry* client = m_pTable->rowOfWindow(sender);
    if (!request.isUsable() || !client) {
        return NOT_TO_BE_HAD;
    }
    const AppEntry* holder = m_pTable->findFileHolder(request.file, request.access);
    if (holder && !areReaders(request.access, *holder)) {
        return static_cast<int>(holder->window);
    }
    if (m_pBridge) {
        if (const HWND tool = m_pBridge->toolForLockedFile(request.file, request.access)) {
            return static_cast<int>(tool);
        }
    }
    holdFile(*client, request.file, request.access);
    return 0;
}

void ipcDes::holdFile(const AppEntry& client, const PathName& file, std::uint32_t access) {
    int isMerged = 0;
    AppEntry* row = m_pTable->addFileToRow(client.window, access, file, &isMerged);
    if (row) {
        const PathName none;
        removeActivityLine(row->window, isMerged ? &file : &none);
    } else {
        auto clone = std::make_unique<AppEntry>(client.name, client.instance, client.window, 0U,
                                                client.toolIndex, 0U, nullptr);
        clone->file = file;
        clone->access = access;
        row = m_pTable->pushFront(std::move(clone));
    }
    addRowLine(*row);
}

void ipcDes::addRowLine(const AppEntry& row) {
    addActivityLine(row.name.c_str(), row.window, &row.file, row.access, row.flags);
}

int ipcDes::onFileQuery(IpcMessage* record) {
    const AccessRequest request{RecordText(*record)};
    if (!request.isUsable()) {
        return NOT_TO_BE_HAD;
    }
    const AppEntry* holder = m_pTable->findFileHolder(request.file, request.access);
    return holder ? static_cast<int>(holder->window) : 0;
}

int ipcDes::onFileClose(IpcMessage* record) {
    const AccessRequest request{RecordText(*record)};
    AppEntry* row = m_pTable->findFileHolder(request.file, request.access);
    if (!row || row->window != record->sender) {
        return 1;
    }
    removeActivityLine(row->window, &request.file);
    row->flags = 0;
    row->access &= ~request.access;  // What the tool doesn't hold isn't taken away.
    if (row->access == 0) {
        m_pTable->clearFile(row);
        if (m_pTable->hasSeveralRows(row->window)) {
            m_pTable->removeRow(row);
            return 1;
        }
    }
    addRowLine(*row);
    return 1;
}

int ipcDes::changeFileFlags(IpcMessage* record, AppTable::FlagChange change) {
    const RecordText text(*record);
    const FileRequest request(text.view());
    if (!request.isComplete) {
        return 0;
    }
    const PathName file(request.file.c_str());
    const auto bits = static_cast<std::uint32_t>(request.number);
    const AppEntry* row = (m_pTable->*change)(record->sender, file, bits);
    if (!row) {
        return 0;
    }
    removeActivityLine(row->window, &file);
    addRowLine(*row);
    return static_cast<int>(row->window);
}

int ipcDes::onFileSetFlags(IpcMessage* record) {
    return changeFileFlags(record, &AppTable::setFileFlags);
}

int ipcDes::onFileClearFlags(IpcMessage* record) {
    return changeFileFlags(record, &AppTable::clearFileFlags);
}

int ipcDes::onFileFindFlags(IpcMessage* record) {
    const RecordText text(*record);
    const FileRequest request(text.view());
    if (!request.isComplete) {
        return 0;
    }
    const PathName file(request.file.c_str());
    auto flags = static_cast<std::uint32_t>(request.number);
    HWND holder = 0;
    if (const AppEntry* row = m_pTable->findFileFlags(request.window, file, &flags)) {
        holder = row->window;
    } else if (m_pBridge) {
        flags = static_cast<std::uint32_t>(request.number);
        holder = m_pBridge->toolForMonitoredFile(request.window, file, &flags);
    }
    // The length of the answer stays the whole capacity: the tool scans the text.
    std::snprintf(record->text, sizeof record->text, "\"%s\" %i %x", request.file.c_str(),
                  holder ? static_cast<int>(flags) : 0, holder);
    return static_cast<int>(holder);
}

}  // namespace juntora
