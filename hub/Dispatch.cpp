// From a record to its handler, or on to another tool.
#include <algorithm>
#include <cstring>
#include <iterator>

#include "framework/CWinApp.h"
#include "framework/CWnd.h"
#include "hub/HubMessages.h"
#include "hub/RecordText.h"
#include "hub/ipcDes.h"
#include "platform/desktop/message.h"

namespace juntora {

struct ipcDes::Request {
    int opcode;
    Handler handler;
};

/// What the hub itself answers. IPC_CHILD_HELLO, IPC_DEPARTED and IPC_STATUS are for tools: the hub
/// carries them only.
const ipcDes::Request ipcDes::REQUESTS[] = {
    {IPC_SIGN_ON, &ipcDes::onSignOn},
    {IPC_SIGN_OFF, &ipcDes::onSignOff},
    {IPC_FIND_APP, &ipcDes::onFindApp},
    {IPC_APP_NAME, &ipcDes::onAppName},
    {IPC_WATCH, &ipcDes::onWatch},
    {IPC_COMMAND, &ipcDes::onHubCommand},
    {IPC_IS_ALIVE, &ipcDes::onIsAlive},
    {IPC_LAUNCH, &ipcDes::onLaunch},
    {IPC_LAUNCH_WAIT, &ipcDes::onLaunchWait},
    {IPC_SET_ENV, &ipcDes::onSetEnv},
    {IPC_FILE_OPEN, &ipcDes::onFileOpen},
    {IPC_FILE_QUERY, &ipcDes::onFileQuery},
    {IPC_FILE_CLOSE, &ipcDes::onFileClose},
    {IPC_FILE_SET_FLAGS, &ipcDes::onFileSetFlags},
    {IPC_FILE_CLEAR_FLAGS, &ipcDes::onFileClearFlags},
    {IPC_FILE_FIND_FLAGS, &ipcDes::onFileFindFlags},
};

int ipcDes::onRequest(int opcode, IpcMessage* record) {
    int result = 0;
    if (m_pBridge && m_pBridge->firstLook(opcode, record, &result)) {
        return result;
    }
    if (record->target != 0) {
        if (record->replyLength == -1) {
            record->replyLength = 0;
        }
        return forwardRecord(opcode, record);
    }
    result = dispatch(opcode, record);
    if (opcode == IPC_SIGN_ON && result > 0) {
        // Posted, so that the tool has its answer before Planchet is looked for.
        if (const CWnd* mainWindow = AfxGetMainWnd()) {
            PostMessageA(mainWindow->m_hWnd, RegisterWindowMessageA(HUB_START_PLANCHET_MESSAGE), 0,
                         0);
        }
    }
    return result;
}

int ipcDes::dispatch(int opcode, IpcMessage* record) {
    const auto request = std::find_if(std::begin(REQUESTS), std::end(REQUESTS),
                                      [&](const Request& each) { return each.opcode == opcode; });
    return request == std::end(REQUESTS) ? 0 : (this->*request->handler)(record);
}

int ipcDes::forwardRecord(int opcode, const IpcMessage* record) {
    const HWND target = record->target;
    if (!m_pTable->rowOfWindow(target)) {
        return 0;
    }
    IpcMessage* copy = ipcMemAlloc(sizeof(IpcMessage));
    if (!copy) {
        return 0;
    }
    const RecordText text(*record);
    copy->target = target;
    copy->sender = record->sender;
    copy->replyLength = 0;  // The mark of a posted copy: without it the target would keep the slot.
    copy->spillLength = record->spillLength;
    copy->link = record->link;
    std::memcpy(copy->text, text.c_str(), std::min(text.view().size() + 1, sizeof copy->text));
    copy->text[sizeof copy->text - 1] = '\0';

    const BOOL posted =
        PostMessageA(target, ipcMessageId, static_cast<WPARAM>(opcode), ipcMemOffset(copy));
    if (!posted) {
        ipcMemFree(copy);  // Nobody else knows of it.
    }
    return posted;
}

}  // namespace juntora
