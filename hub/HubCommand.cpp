// The words that a tool can say to the hub itself.
#include <string_view>

#include "common/CaseBlind.h"
#include "framework/CWinApp.h"
#include "framework/CWnd.h"
#include "hub/HubMessages.h"
#include "hub/RecordText.h"
#include "hub/ipcDes.h"
#include "platform/desktop/message.h"

namespace juntora {
namespace {

int show(const AppTable&, HWND) {
    if (const CWnd* mainWindow = AfxGetMainWnd()) {
        PostMessageA(mainWindow->m_hWnd, RegisterWindowMessageA(HUB_SHOW_MESSAGE), 1, 0);
    }
    return 0;
}

int countRows(const AppTable& table, HWND) { return table.count(); }

// The tools sign off in requests of their own while this one waits, so that the table is another
// one afterwards.
int closeAllApps(const AppTable&, HWND sender) {
    if (const CWnd* mainWindow = AfxGetMainWnd()) {
        SendMessageA(mainWindow->m_hWnd, RegisterWindowMessageA(HUB_CLOSE_APPS_MESSAGE), 0,
                     static_cast<LPARAM>(sender));
    }
    return 0;
}

int isSketchelRunning(const AppTable& table, HWND) {
    return table.findNewest(0, "Sketchel", false) ? 1 : 0;
}

struct HubCommand {
    std::string_view word;
    int (*action)(const AppTable& table, HWND sender);
};

constexpr HubCommand COMMANDS[] = {
    {"SW_SHOW", show},
    {"JUNTORA_ANY_APPS_RUNNING", countRows},
    {"JUNTORA_CLOSE_ALL_APPS", closeAllApps},
    {"JUNTORA_IS_SKETCHEL_RUNNING", isSketchelRunning},
};

}  // namespace

int ipcDes::onHubCommand(IpcMessage* record) {
    const RecordText text(*record);
    for (const HubCommand& command : COMMANDS) {
        if (equalCaseBlind(text.view(), command.word)) {
            return command.action(*m_pTable, record->sender);
        }
    }
    return 0;
}

}  // namespace juntora
