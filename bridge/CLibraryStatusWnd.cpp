#include "bridge/CLibraryStatusWnd.h"

#include <cstdio>

#include "hub/ipcDes.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"

namespace juntora {
namespace {

constexpr char WINDOW_CLASS[] = "JuntoraLibraryStatus";
constexpr char LIBRARY_TOOL[] = "Sketchel";

/// What a notice's text may have, NUL included. A longer one would name another file than the one
/// that was meant, so it is dropped.
constexpr std::size_t TEXT_SIZE = 1024;

void sendToLibraryTool(const char* format, const char* text) {
    const ipcDes* hub = ipcDes::theHub();
    const HWND tool = hub != nullptr ? hub->findToolWindow(LIBRARY_TOOL) : 0;
    char notice[TEXT_SIZE];
    const int length = std::snprintf(notice, sizeof notice, format, text);
    if (tool != 0 && length >= 0 && static_cast<std::size_t>(length) < sizeof notice) {
        ipcCommand(notice, tool);
    }
}

}  // namespace

const UINT g_nLibraryStatusMessage = RegisterWindowMessageA("Juntora_LibraryStatus_Internal_Msg");

bool CLibraryStatusWnd::Create(const CWnd& parent) {
    constexpr int WINDOW_ID = 1018;
    const WNDCLASSA windowClass{0, AfxGetAfxWndProc(), 0, 0, 0, WINDOW_CLASS};
    return g_nLibraryStatusMessage != 0 && AfxRegisterClass(&windowClass) &&
           CreateEx(0, WINDOW_CLASS, "Juntora_CLibraryStatusWnd", WS_CHILD | WS_BORDER, 0, 0, 0, 0,
                    parent.m_hWnd, WINDOW_ID);
}

void CLibraryStatusWnd::PostNotice(int code, const char* text) {
    const LPARAM lParam = text != nullptr ? m_texts.put(text) : 0;
    if (m_hWnd == 0 || g_nLibraryStatusMessage == 0 ||
        !PostMessageA(m_hWnd, g_nLibraryStatusMessage, static_cast<WPARAM>(code), lParam)) {
        m_texts.take(lParam);
    }
}

LRESULT CLibraryStatusWnd::OnNotice(WPARAM wParam, LPARAM lParam) {
    const auto text = m_texts.take(lParam);
    if (m_pLibraryStatus == nullptr || (!text && lParam != 0)) {
        return 0;
    }
    const char* const named = text ? text->c_str() : "";
    switch (wParam) {
        case LIBRARY_LIST_CHANGED:
            sendToLibraryTool("LibraryListChanged%s", "");
            break;
        case LIBRARY_CHANGED:
            sendToLibraryTool("LibraryChange \"%s\"", named);
            break;
        case CLOSE_FILE:
            sendToLibraryTool("CloseFile \"%s\"", named);
            break;
        default:
            break;
    }
    return 0;
}

const AFX_MSGMAP& CLibraryStatusWnd::GetMessageMap() const {
    static const AFX_MSGMAP_ENTRY entries[] = {
        ON_REGISTERED_MESSAGE<&CLibraryStatusWnd::OnNotice>(g_nLibraryStatusMessage)};
    static const AFX_MSGMAP map{&CWnd::GetMessageMap(), entries};
    return map;
}

}  // namespace juntora
