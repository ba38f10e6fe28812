#include "hub/CIpcMsgWnd.h"

#include "hub/SelfId.h"

namespace juntora {

LRESULT CIpcMsgWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    if (m_pIpc && serve(message, wParam, lParam, &result)) {
        return result;
    }
    if (message == WM_CLOSE || message == SC_CLOSE) {
        return 0;
    }
    return CWnd::WindowProc(message, wParam, lParam);
}

bool CIpcMsgWnd::serve(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    // A record that the hub sends in a tool's name arrives here inside that very send. It must be
    // received as the hub receives all others, its long text left in its file.
    const ScopedSelfId self(HUB_ID);
    IpcMessage* record = nullptr;
    int opcode = 0;
    if (!ipcReceive(message, wParam, lParam, &record, &opcode)) {
        return false;
    }
    ++m_nServing;
    *result = m_pIpc->onRequest(opcode, record);
    --m_nServing;
    ipcRelease(record);
    return true;
}

}  // namespace juntora
