#include "bridge/CLibraryStatus.h"

#include "bridge/CLibraryStatusWnd.h"
#include "framework/COleObjectFactory.h"
#include "framework/CWinApp.h"
#include "platform/desktop/message.h"

namespace juntora {

CLibraryStatus::CLibraryStatus() {
    EnableAutomation();
    AfxOleLockApp();
    const CWnd* main = AfxGetMainWnd();
    if (main == nullptr || main->m_hWnd == 0) {
        return;
    }
    m_pWnd = std::make_unique<CLibraryStatusWnd>(this);
    if (m_pWnd->Create(*main)) {
        m_pWnd->SetWindowPos(HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    } else {
        m_pWnd.reset();
    }
}

CLibraryStatus::~CLibraryStatus() {
    if (m_pWnd) {
        m_pWnd->DestroyWindow();
        m_pWnd.reset();
    }
    AfxOleUnlockApp();
    if (const CWnd* main = AfxGetMainWnd(); main != nullptr && main->m_hWnd != 0) {
        PostMessageA(main->m_hWnd, WM_SYSCOMMAND, SC_CLOSE, 0);
    }
}

LONG CLibraryStatus::post(int code, const char* text) const {
    if (m_pWnd) {
        m_pWnd->PostNotice(code, text);
    }
    return 0;
}

LONG CLibraryStatus::LibraryListChanged() { return post(LIBRARY_LIST_CHANGED, nullptr); }
LONG CLibraryStatus::LibraryChanged(const char* library) { return post(LIBRARY_CHANGED, library); }
LONG CLibraryStatus::CloseFile(const char* file) { return post(CLOSE_FILE, file); }

const AFX_DISPMAP* CLibraryStatus::dispatchMap() {
    static const AFX_DISPMAP_ENTRY entries[] = {
        DISP_FUNCTION<&CLibraryStatus::LibraryListChanged>("LibraryListChanged"),
        DISP_FUNCTION<&CLibraryStatus::LibraryChanged>("LibraryChanged"),
        DISP_FUNCTION<&CLibraryStatus::CloseFile>("CloseFile"),
    };
    static const AFX_DISPMAP map(BusNameOfClass(LIBRARY_STATUS_PROGRAM_ID), entries);
    return &map;
}

std::span<const GUID> CLibraryStatus::GetInterfaceMap() const {
    static constexpr GUID INTERFACES[] = {IID_LibraryStatus};
    return INTERFACES;
}

}  // namespace juntora
