// A window as an object: its messages come to WindowProc, from there to the handlers of the message
// map, and what none of them wants to the default handling.
//
// An object and its window belong to the thread that made the window. The object is the caller's;
// it may outlive the window (m_hWnd is 0 then) and takes the window with it when it goes first.
#pragma once

#include "framework/CCmdTarget.h"
#include "platform/desktop/window.h"

namespace juntora {

class CWnd : public CCmdTarget {
public:
    CWnd() = default;
    ~CWnd() override;

    HWND m_hWnd = 0;

    /// Makes the window; messages come to this object from WM_CREATE on. The class must have
    /// AfxGetAfxWndProc() as its procedure. Sizes in pixels. 0 on failure, or if there is a window
    /// already.
    BOOL CreateEx(DWORD exStyle, const char* cls, const char* title, DWORD style, int x, int y,
                  int w, int h, HWND parent, int id);
    /// Takes over a window of whatever class that this thread has made: its messages come here
    /// first, and the default handling is what its class does.
    BOOL SubclassWindow(HWND window);
    virtual BOOL DestroyWindow();

    BOOL ShowWindow(int command) { return juntora::ShowWindow(m_hWnd, command); }
    BOOL SetWindowPos(HWND insertAfter, int x, int y, int w, int h, UINT flags) {
        return juntora::SetWindowPos(m_hWnd, insertAfter, x, y, w, h, flags);
    }
    BOOL IsIconic() const { return juntora::IsIconic(m_hWnd); }

protected:
    /// Everything that comes to the window.
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// What happens to a message that nobody handles.
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    /// In a handler: the default handling of the message that it was called for.
    LRESULT Default();

private:
    friend class MessageEntry;
    bool OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
    void Attach(HWND window);
    void Detach();

    WNDPROC m_pfnSuper = nullptr;  ///< Of the window's class, where the window was taken over.
};

/// The window procedure of all classes whose windows are objects. Nothing is thrown out of it.
WNDPROC AfxGetAfxWndProc();

/// Registers a window class, unless the process has it already. 0 on failure.
BOOL AfxRegisterClass(const WNDCLASSA* windowClass);

}  // namespace juntora
