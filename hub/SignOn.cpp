// How tools come in.
#include <cstdio>

#include "common/CaseBlind.h"
#include "hub/HubMessages.h"
#include "hub/RecordText.h"
#include "hub/ToolTable.h"
#include "hub/ipcDes.h"
#include "ipc/TextScan.h"
#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

/// The longest reply to a sign-on, NUL included; tools count on no longer one.
constexpr std::size_t SIGN_ON_REPLY_SIZE = 80;

/// Where the text of a record stood in the protocol's first versions.
constexpr std::size_t OLD_TEXT_OFFSET = 12;

constexpr char UNKNOWN_TOOL[] = "the last Ohmara program started";

bool beginsWithLetter(std::string_view text) {
    return !text.empty() && foldCase(text[0]) >= 'a' && foldCase(text[0]) <= 'z';
}

std::string versionMessage(std::string_view tool) {
    char text[512];
    LoadStringA(VERSION_MESSAGE_STRING, text, sizeof text);
    std::string message(text);
    if (const std::size_t place = message.find("%1"); place != std::string::npos) {
        message.replace(place, 2, tool);
    }
    return message;
}

bool isClientId(HWND window) { return window != 0 && window != static_cast<HWND>(-1); }

std::string signOnReply(HWND window, std::string_view name) {
    char id[16];
    std::snprintf(id, sizeof id, "%x ", window);
    return std::string(id).append(name);
}

}  // namespace

int ipcDes::onSignOn(IpcMessage* record) {
    const RecordText text(*record);
    TextScan scan(text.view());
    std::string_view name;
    int version = 0;
    if (scan.word(&name)) {
        scan.decimal(&version);
    }

    if (!checkVersion(name, version, record)) {
        return 0;
    }
    const HWND window = record->sender;
    if (!isClientId(window) || !hasReplyRoom(*record)) {
        return 0;
    }
    const std::int32_t instance = m_pTable->nextInstance(name);
    const std::string reply = signOnReply(window, uniqueName(name, instance));
    // A tool that never learns its whole name would be found under none that it knows.
    if (reply.size() >= SIGN_ON_REPLY_SIZE) {
        return 0;
    }

    enterTool(name, instance, window);
    writeReply(record, reply);
    return 1;
}

int ipcDes::checkVersion(std::string_view name, int version, const IpcMessage* record) {
    if (version == IPC_VERSION) {
        return 1;
    }
    const RecordText oldText(reinterpret_cast<const char*>(record) + OLD_TEXT_OFFSET,
                             sizeof(IpcMessage) - OLD_TEXT_OFFSET);
    const std::string_view tool = beginsWithLetter(name)             ? name
                                  : beginsWithLetter(oldText.view()) ? oldText.view()
                                                                     : UNKNOWN_TOOL;
    MessageBoxA(0, versionMessage(tool).c_str(), nullptr, MB_SYSTEMMODAL | MB_ICONSTOP);
    return 0;
}

void ipcDes::addToolRow(const char* baseName, HWND window) {
    enterTool(baseName, m_pTable->nextInstance(baseName), window);
}

void ipcDes::enterTool(std::string_view baseName, std::int32_t instance, HWND window) {
    if (m_pHadClient) {
        *m_pHadClient = 1;
    }
    AppEntry* row = m_pTable->pushFront(std::make_unique<AppEntry>(
        uniqueName(baseName, instance), instance, window, 1U, -1, 0U, nullptr));
    addActivityLine(row->name.c_str(), window, nullptr, 0, 0);
    row->toolIndex = findTool(baseName);
}

}  // namespace juntora
