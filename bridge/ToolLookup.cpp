// Which records, files and names are the bridge's.
#include "bridge/CComLink.h"
#include "common/CaseBlind.h"
#include "common/FileLock.h"
#include "hub/RecordText.h"
#include "hub/ipcDes.h"

namespace juntora {
namespace {

constexpr int ANY_WATCHES = LOCK_WATCHED_BY_THIS | LOCK_WATCHED_BY_OTHER;
constexpr int ANY_WRITES = LOCK_WRITTEN_BY_THIS | LOCK_WRITTEN_BY_OTHER;
constexpr int ANY_READS = LOCK_READ_BY_THIS | LOCK_READ_BY_OTHER;

constexpr std::uint32_t WATCH_FLAG = 1;
constexpr std::uint32_t WRITE_ACCESS = 2;

using WindowOf = HWND (CComLink::*)() const;

struct NamedTool {
    const char* name;
    WindowOf window;
};

constexpr NamedTool TOOLS_BY_NAME[] = {
    {"Voltara", &CComLink::voltaraWindow}, {"VoltaraAD", &CComLink::voltaraWindow},
    {"Gatrel", &CComLink::voltaraWindow},  {"Scopel", &CComLink::scopelWindow},
    {"Tunara", &CComLink::tunaraWindow},   {"Dorvane", &CComLink::dorvaneWindow},
    {"Wavend", &CComLink::wavendWindow},
};

constexpr NamedTool TOOLS_BY_EXTENSION[] = {
    {"lib", &CComLink::dorvaneWindow},
    {"stl", &CComLink::wavendWindow},
    {"opt", &CComLink::tunaraWindow},
};

}  // namespace

HWND CComLink::voltaraWindow() const {
    for (const char* name : {"Voltara", "VoltaraAD", "Gatrel"}) {
        if (const HWND window = rowWindow(name)) {
            return window;
        }
    }
    return 0;
}

HWND CComLink::scopelWindow() const { return rowWindow("Scopel"); }
HWND CComLink::tunaraWindow() const { return rowWindow("Tunara"); }
HWND CComLink::dorvaneWindow() const { return rowWindow("Dorvane"); }
HWND CComLink::wavendWindow() const { return rowWindow("Wavend"); }

HWND CComLink::rowWindow(const char* name) const {
    return m_pHub != nullptr ? m_pHub->findToolWindow(name) : 0;
}

bool CComLink::firstLook(int opcode, IpcMessage* record, int* result) {
    if (m_pHub == nullptr) {
        return false;
    }
    if (record->target != 0) {
        return takeRecord(opcode, record, result);
    }
    switch (opcode) {
        case IPC_SIGN_OFF:
            clientGone(record->sender);
            return false;
        case IPC_FIND_APP:
            return toolByName(record, result);
        case IPC_LAUNCH:
        case IPC_LAUNCH_WAIT:
            if (!onToolLaunch(record)) {
                return false;
            }
            *result = 0;
            return true;
        default:
            return false;
    }
}

/// A record for one of the bridge's rows is never carried on, whatever is in it.
bool CComLink::takeRecord(int opcode, const IpcMessage* record, int* result) {
    struct Row {
        WindowOf window;
        int (CComLink::*request)(int opcode, const IpcMessage* record);
    };
    static constexpr Row ROWS[] = {
        {&CComLink::voltaraWindow, &CComLink::onVoltaraRequest},
        {&CComLink::scopelWindow, &CComLink::onScopelRequest},
        {&CComLink::tunaraWindow, &CComLink::onTunaraRequest},
        {&CComLink::dorvaneWindow, &CComLink::onDorvaneRequest},
        {&CComLink::wavendWindow, &CComLink::onWavendRequest},
    };
    for (const Row& row : ROWS) {
        if ((this->*row.window)() == record->target) {
            *result = (this->*row.request)(opcode, record);
            return true;
        }
    }
    return false;
}

bool CComLink::toolByName(const IpcMessage* record, int* result) const {
    const RecordText text(*record);
    for (const NamedTool& tool : TOOLS_BY_NAME) {
        if (equalCaseBlind(text.view(), tool.name)) {
            *result = static_cast<int>((this->*tool.window)());
            return true;
        }
    }
    return false;
}

HWND CComLink::toolForExtension(const PathName& file) const {
    CString extension;
    file.getExtension(extension, false);
    for (const NamedTool& tool : TOOLS_BY_EXTENSION) {
        if (equalCaseBlind(static_cast<const char*>(extension), tool.name)) {
            return (this->*tool.window)();
        }
    }
    return 0;
}

HWND CComLink::toolForMonitoredFile(HWND window, const PathName& file, std::uint32_t* flags) {
    const bool isAskedFor = (*flags & WATCH_FLAG) != 0;
    *flags = 0;
    if (!isAskedFor || (FileLock(file.c_str()).status() & ANY_WATCHES) == 0) {
        return 0;
    }
    const HWND tool = toolForExtension(file);
    if (window != 0 && window != tool) {
        return 0;
    }
    *flags = WATCH_FLAG;
    return tool;
}

HWND CComLink::toolForLockedFile(const PathName& file, std::uint32_t access) {
    const int against = (access & WRITE_ACCESS) != 0 ? ANY_READS | ANY_WRITES : ANY_WRITES;
    return (FileLock(file.c_str()).status() & against) != 0 ? toolForExtension(file) : 0;
}

}  // namespace juntora
