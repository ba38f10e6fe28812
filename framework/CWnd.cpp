#include "framework/CWnd.h"

#include <utility>

#include "framework/WindowMap.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

/// The message that the innermost handler of this thread is being called for.
struct CurrentMessage {
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};
thread_local CurrentMessage t_current;

/// The object whose window is being made. A message that anybody can send must not name it.
thread_local CWnd* t_inMaking = nullptr;

class CurrentMessageScope {
public:
    CurrentMessageScope(UINT message, WPARAM wParam, LPARAM lParam)
        : m_outer(std::exchange(t_current, {message, wParam, lParam})) {}
    ~CurrentMessageScope() { t_current = m_outer; }
    CurrentMessageScope(const CurrentMessageScope&) = delete;
    CurrentMessageScope& operator=(const CurrentMessageScope&) = delete;

private:
    const CurrentMessage m_outer;
};

}  // namespace

/// Where messages enter from the layer.
class MessageEntry {
public:
    static LRESULT procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        try {
            return dispatch(window, message, wParam, lParam);
        } catch (...) {
            return 0;  // The message is lost; the window and those who wait for it are not.
        }
    }

private:
    static CWnd* objectOf(HWND window, UINT message) {
        if (message == WM_CREATE && t_inMaking) {
            std::exchange(t_inMaking, nullptr)->Attach(window);
        }
        return FindWindowObject(window);
    }

    static LRESULT dispatch(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        CWnd* object = objectOf(window, message);
        if (!object) {
            return DefWindowProcA(window, message, wParam, lParam);
        }
        const CurrentMessageScope scope(message, wParam, lParam);
        const LRESULT result = object->WindowProc(message, wParam, lParam);
        // Only looked at again if the handler has not deleted it.
        if (message == WM_NCDESTROY && FindWindowObject(window) == object) {
            object->Detach();
        }
        return result;
    }
};

CWnd::~CWnd() {
    if (m_hWnd != 0) {
        juntora::DestroyWindow(m_hWnd);
    }
    if (m_hWnd != 0) {
        Detach();
    }
}

BOOL CWnd::CreateEx(DWORD exStyle, const char* cls, const char* title, DWORD style, int x, int y,
                    int w, int h, HWND parent, int id) {
    if (m_hWnd != 0) {
        return 0;
    }
    t_inMaking = this;
    const HWND window = CreateWindowExA(exStyle, cls, title, style, x, y, w, h, parent, id);
    t_inMaking = nullptr;
    return window != 0 && m_hWnd == window ? 1 : 0;
}

BOOL CWnd::SubclassWindow(HWND window) {
    if (m_hWnd != 0 || FindWindowObject(window)) {
        return 0;
    }
    const WNDPROC super = SetWindowProc(window, MessageEntry::procedure);
    if (!super) {
        return 0;
    }
    m_pfnSuper = super;
    Attach(window);
    return 1;
}

BOOL CWnd::DestroyWindow() { return m_hWnd != 0 ? juntora::DestroyWindow(m_hWnd) : 0; }

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT result = 0;
    return OnWndMsg(message, wParam, lParam, &result) ? result
                                                      : DefWindowProc(message, wParam, lParam);
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    return m_pfnSuper ? CallWindowProcA(m_pfnSuper, m_hWnd, message, wParam, lParam)
                      : DefWindowProcA(m_hWnd, message, wParam, lParam);
}

LRESULT CWnd::Default() {
    const CurrentMessage current = t_current;
    return DefWindowProc(current.message, current.wParam, current.lParam);
}

bool CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_COMMAND) {
        const auto notice = static_cast<WORD>(wParam >> 16);
        return notice == BN_CLICKED && OnCmdMsg(static_cast<WORD>(wParam));
    }
    const AFX_MSGMAP_ENTRY::Handler handler = GetMessageMap().find(message, 0);
    if (handler) {
        *result = handler(*this, wParam, lParam);
    }
    return handler != nullptr;
}

void CWnd::Attach(HWND window) {
    AddWindowObject(window, this);
    m_hWnd = window;
}

void CWnd::Detach() {
    RemoveWindowObject(m_hWnd);
    m_hWnd = 0;
    m_pfnSuper = nullptr;
}

WNDPROC AfxGetAfxWndProc() { return MessageEntry::procedure; }

BOOL AfxRegisterClass(const WNDCLASSA* windowClass) {
    return RegisterClassA(windowClass) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS;
}

}  // namespace juntora
