#include "bridge/CLibraryStatusWnd.h"

#include <string>

#include "hub/ipcDes.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"

namespace juntora {
namespace {

/// 0 where it could not be registered.
const UINT g_nLibraryStatusMessage = RegisterWindowMessageA("Juntora_LibraryStatus_Internal_Msg");

constexpr char WINDOW_CLASS[] = "JuntoraLibraryStatus";
constexpr char LIBRARY_TOOL[] = "Sketchel";

/// What a notice's text may have, NUL included.
constexpr std::size_t TEXT_SIZE = 1024;

void sendToLibraryTool(const std::string& notice) {
    const ipcDes* hub = ipcDes::theHub();
    if (const HWND tool = hub != nullptr ? hub->findToolWindow(LIBRARY_TOOL) : 0) {
        ipcCommand(notice.c_str(), tool);
    }
}

/// A text that is cut short, or that has a quote in it, would name another file than was meant.
void sendNamed(const std::string& command, const std::string& file) {
    const std::string notice = command + " \"" + file + '"';
    if (notice.size() < TEXT_SIZE && file.find('"') == file.npos) {
        sendToLibraryTool(notice);
    }
}

}  // namespace

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
    const std::string file = text ? *text : "";
    switch (wParam) {
        case LIBRARY_LIST_CHANGED:
            sendToLibraryTool("LibraryListChanged");
            break;
        case LIBRARY_CHANGED:
            sendNamed("LibraryChange", file);
            break;
        case CLOSE_FILE:
            sendNamed("CloseFile", file);
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
