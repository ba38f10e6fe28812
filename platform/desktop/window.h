// Windows of the desktop: they live in the shared segment, so that every process sees those of
// every other. A window belongs to the thread that made it and dies with that thread.
//
// Unless told otherwise a call that is given a window which does not exist returns 0 and sets
// ERROR_INVALID_WINDOW_HANDLE, and any thread may call it. None of them throws.
#pragma once

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

struct WNDCLASSA {
    UINT style;
    WNDPROC lpfnWndProc;
    int icon;                   ///< Resource number, 0 for none.
    int cursor;                 ///< Resource number of a standard cursor, 32512 for the arrow.
    int background;             ///< System colour plus one, 0 for none.
    const char* lpszClassName;  ///< 1 to 63 bytes; copied.
};

/// Makes a class known to this process. Returns non-zero, or 0 when the name is unfit or already a
/// class of this process (ERROR_CLASS_ALREADY_EXISTS). Names compare without regard to case.
WORD RegisterClassA(const WNDCLASSA* windowClass);

/// The desktop itself: the parent of all top-level windows and of desktop children.
HWND GetDesktopWindow();

/// Makes a window of the calling thread and sends it WM_CREATE with `param` as lParam; a result of
/// -1 unmakes it again. `title` may be null; 511 bytes of it are kept. `parent` 0 with WS_CHILD
/// clear is a top-level window. `id` is the child's identifier. A window made visible sends no
/// WM_SHOWWINDOW. Position and size are in pixels relative to the parent. A `parent` of a top-level
/// window is its owner: a viewer keeps it above that one.
/// Returns 0 when the class is unknown, WM_CREATE refused or the desktop is full.
HWND CreateWindowExA(DWORD extendedStyle, const char* className, const char* title, DWORD style,
                     int x, int y, int width, int height, HWND parent, int id,
                     void* param = nullptr);

/// Destroys a window of the calling thread after its children, with WM_DESTROY and WM_NCDESTROY.
/// Its timers go, messages that wait for it are dropped, and senders get 0.
BOOL DestroyWindow(HWND window);

/// Whether the window exists and the thread that owns it lives. No system call unless it has died.
BOOL IsWindow(HWND window);

/// The top-most window whose parent is the desktop, of this class and title (null: any), in
/// whatever process. Both compare without regard to case. Costs a few loads while no window of the
/// desktop has come, gone, moved in the order or changed its title since the same question was last
/// asked by this thread.
HWND FindWindowA(const char* className, const char* title);

/// GW_CHILD: the top-most child. GW_HWNDNEXT: the sibling below. GW_OWNER: the window that a
/// top-level one was made with as its parent. 0 where there is none.
HWND GetWindow(HWND window, UINT which);

/// The window that a child is in; 0 for the desktop's own children, top-level or not.
HWND GetParent(HWND window);

/// The top-most child with this identifier; 0, and no error, if there is none.
HWND GetDlgItem(HWND parent, int id);
int GetDlgCtrlID(HWND window);

/// Calls `visit(window, context)` for the desktop's children in window order until it returns 0.
void EnumWindows(BOOL (*visit)(HWND, LPARAM), LPARAM context);

/// The thread that owns the window (a number of the desktop, not of the kernel) and the kernel's
/// number of its process, 0 for none.
DWORD GetWindowThreadProcessId(HWND window, DWORD* processId);

/// The class, cut to `capacity` bytes with its NUL. Returns the characters copied, NUL not counted.
int GetClassNameA(HWND window, char* buffer, int capacity);

/// The text, by WM_GETTEXT for a window of this process and from the segment for any other. Returns
/// the characters copied, NUL not counted.
int GetWindowTextA(HWND window, char* buffer, int capacity);

/// Sends the text by WM_SETTEXT. Returns whether the window took it.
BOOL SetWindowTextA(HWND window, const char* text);

DWORD GetWindowStyle(HWND window);
/// Takes bits of the style away and adds others: such as tell how a control looks. Those of the
/// window's state (visible, disabled, minimised) have calls of their own.
void ModifyWindowStyle(HWND window, DWORD remove, DWORD add);

/// The place in pixels relative to the parent, for a desktop's child to the desktop.
BOOL GetWindowRect(HWND window, RECT* rect);

/// The same size with its left top corner at 0, 0: windows here have no frame.
BOOL GetClientRect(HWND window, RECT* rect);

/// SW_HIDE hides. SW_MINIMIZE, SW_SHOWMINIMIZED and SW_SHOWMINNOACTIVE show the window minimised,
/// SW_SHOWNORMAL and SW_RESTORE at its full size, SW_SHOW as it is; these three put it on top of
/// its siblings, and a top-level window in front. Every other value shows it as it is, where it is.
/// WM_SHOWWINDOW is sent where visibility changes. Returns whether the window was visible before.
BOOL ShowWindow(HWND window, int command);

/// Whether the window and all that it is in are visible.
BOOL IsWindowVisible(HWND window);
BOOL IsIconic(HWND window);

/// Enables or disables; sends WM_ENABLE where that changes. Returns whether the window was disabled
/// before.
BOOL EnableWindow(HWND window, BOOL enable);

/// Whether the window itself is enabled, whatever it is in.
BOOL IsWindowEnabled(HWND window);

/// Moves the window, sizes it and puts it at the bottom of its siblings (`insertAfter` HWND_BOTTOM)
/// or at the top (any other), but for what SWP_NOMOVE, SWP_NOSIZE and SWP_NOZORDER forbid. Other
/// flags change nothing: no window is activated.
BOOL SetWindowPos(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags);

/// Marks the window as the one in front and puts it at the top of the window order.
BOOL SetForegroundWindow(HWND window);

/// 0 while no window that is still there has been marked.
HWND GetForegroundWindow();

/// How often what the window shows has changed (text, state, place, list lines): a load from the
/// segment, so that a viewer in another process can tell cheaply whether to look again. 0 for none.
DWORD GetWindowChangeCount(HWND window);

/// Tells viewers that something they cannot see by themselves has changed in the calling thread's
/// window, such as a list's lines.
void NoteWindowChange(HWND window);

/// A word of the owner's beside the window, private to its process; 0 at first.
LPARAM GetWindowUserData(HWND window);
void SetWindowUserData(HWND window, LPARAM value);

/// What a window procedure calls for a message that it does not handle: close destroys, a system
/// command acts, texts are stored and read.
LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Replaces the window's procedure (own process only). Returns the one before.
WNDPROC SetWindowProc(HWND window, WNDPROC procedure);
LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam, LPARAM lParam);

}  // namespace juntora
