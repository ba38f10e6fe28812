#include "bridge/CComInterfaceWnd.h"

#include <utility>

#include "bridge/CComLink.h"
#include "platform/desktop/message.h"

namespace juntora {
namespace {

const UINT g_nSessionMessage = RegisterWindowMessageA(SESSION_MESSAGE);

}  // namespace

const UINT g_nComInterfaceMessage = RegisterWindowMessageA("WM_Juntora_CComInterfaceWnd");

bool CComInterfaceWnd::Create(const char* caption, int id) {
    const WNDCLASSA windowClass{0, AfxGetAfxWndProc(), 0, 0, 0, STANDBY_WINDOW_CLASS};
    return g_nComInterfaceMessage != 0 && AfxRegisterClass(&windowClass) &&
           CreateEx(0, STANDBY_WINDOW_CLASS, caption, WS_CHILD | WS_BORDER, 0, 0, 0, 0,
                    GetDesktopWindow(), id) &&
           SetWindowPos(HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

BOOL CComInterfaceWnd::postCode(int code, LPARAM value) {
    if (m_hWnd == 0 || g_nComInterfaceMessage == 0 || code < BRIDGE_START_VOLTARA ||
        code > BRIDGE_CLOSED) {
        return 0;
    }
    return PostMessageA(m_hWnd, g_nComInterfaceMessage, static_cast<WPARAM>(code), value);
}

BOOL CComInterfaceWnd::postText(int code, const std::string& text) {
    const LPARAM value = m_texts.put(text);
    const BOOL isPosted = postCode(code, value);
    if (!isPosted) {
        m_texts.take(value);
    }
    return isPosted;
}

BOOL CComInterfaceWnd::postChange(ChangeRecord change) {
    const LPARAM value = m_changes.put(std::move(change));
    const BOOL isPosted = postCode(BRIDGE_CHANGE, value);
    if (!isPosted) {
        m_changes.take(value);
    }
    return isPosted;
}

/// Whoever closes the tool's row closes the session. The window goes with it, from the message
/// loop, and not here.
void CComInterfaceWnd::onClose() {
    if (m_pComLink == nullptr) {
        Default();
    } else if (CComInterfaceWnd* window = m_pComLink->firstWindow()) {
        m_pComLink->closeLater(m_hWnd);
        window->postCode(BRIDGE_CLOSED, m_hWnd);
    }
}

LRESULT CComInterfaceWnd::onBridgeMessage(WPARAM wParam, LPARAM lParam) {
    if (m_pComLink == nullptr) {
        return 0;
    }
    // Behind this the window may be gone, and this object with it.
    m_pComLink->perform(
        {static_cast<int>(wParam), lParam, m_texts.take(lParam), m_changes.take(lParam)});
    return 0;
}

LRESULT CComInterfaceWnd::onSessionQuestion(WPARAM wParam) {
    if (m_pComLink == nullptr) {
        return 0;
    }
    const Session session = m_pComLink->sessionOf(*this);
    return wParam == SESSION_ASK_CLIENT ? static_cast<LRESULT>(session.client)
                                        : static_cast<LRESULT>(session.state);
}

const AFX_MSGMAP& CComInterfaceWnd::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {
        ON_MESSAGE<&CComInterfaceWnd::onClose>(WM_CLOSE),
        ON_REGISTERED_MESSAGE<&CComInterfaceWnd::onBridgeMessage>(g_nComInterfaceMessage),
        ON_REGISTERED_MESSAGE<&CComInterfaceWnd::onSessionQuestion>(g_nSessionMessage)};
    static const AFX_MSGMAP map{&CWnd::GetMessageMap(), entries};
    return map;
}

}  // namespace juntora
