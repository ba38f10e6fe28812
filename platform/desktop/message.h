// Messages between threads and processes of a desktop, the message loop and its timers.
//
// Each thread that makes a window, sends or looks for messages has a queue. The calls on a queue
// concern that of the calling thread. What window procedures, timers and descriptors' callbacks
// throw is told on standard error and goes no further; a message then has the result 0.
#pragma once

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

/// What a text that travels with a message between threads may have, NUL included.
inline constexpr DWORD MESSAGE_TEXT_BYTES = 60'000;

/// The number of a message by name, the same in every process of the desktop, from 0xC000 on.
/// Names are 1 to 255 bytes and compare without regard to case. 0 when the desktop cannot be had or
/// holds 4,096 names already.
UINT RegisterWindowMessageA(const char* name);

/// Runs the window's procedure in the thread that owns it and returns its result. A window of the
/// calling thread is called directly. While the thread waits it serves messages that are sent to
/// it, no posted ones and no timers. Result 0 when the window does not exist, when its thread dies
/// while the message is with it (within 100 ms of the death, commonly at once), or when 32 sends
/// of this thread are nested already.
///
/// Texts travel with WM_SETTEXT, WM_GETTEXT, LB_ADDSTRING, LB_INSERTSTRING, LB_GETTEXT,
/// LB_FINDSTRINGEXACT and the messages of view.h, up to MESSAGE_TEXT_BYTES each; the buffer of an
/// LB_GETTEXT to another process must hold the line, as LB_GETTEXTLEN tells it (one of
/// MESSAGE_TEXT_BYTES holds any). No other pointer is of use in another process. WM_CREATE,
/// WM_INITDIALOG, WM_DESTROY and WM_NCDESTROY go to windows of the calling thread only.
LRESULT SendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// As SendMessageA, but gives a thread up that is hung: one that is awake and has not looked at its
/// queue for `hungMilliseconds`, or does not take the message for as long. A thread that shows a
/// box of its own meanwhile is not hung. Returns 1 with the result stored, or 0 with
/// ERROR_TIMEOUT or ERROR_INVALID_WINDOW_HANDLE; a message that was given up may still be handled
/// later. Text messages to other threads are refused (ERROR_INVALID_PARAMETER).
BOOL SendMessageUnlessHung(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                           DWORD hungMilliseconds, LRESULT* result);

/// Puts a message into the queue of the window's thread and returns at once. 0 when the window does
/// not exist, 16,384 messages wait there already (ERROR_TOO_MANY_POSTS), or the message carries a
/// text, which nobody could keep for it, or is one of those four (ERROR_MESSAGE_SYNC_ONLY), or is
/// WM_QUIT for another thread (ERROR_ACCESS_DENIED): who wants another program's end closes its
/// windows. Window 0: the calling thread's own queue. Messages of one sender to one thread keep
/// their order.
BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Ends the thread's loops: GetMessageA returns 0 once nothing else waits.
void PostQuitMessage(int exitCode);

/// Serves sent messages, then looks for one that waits: posted, WM_QUIT, then due timers. `first`
/// and `last` bound the message numbers, both 0 for all. Returns 1 with the message.
BOOL PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove);

/// Waits for a message. Returns 0 for WM_QUIT, -1 when the desktop cannot be had, else 1.
BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last);

/// Makes characters of key messages; nothing else is changed. Returns whether it did.
BOOL TranslateMessage(const MSG* message);

LRESULT DispatchMessageA(const MSG* message);

/// A repeating timer of a window of the calling thread: WM_TIMER with `id` at each tick, when
/// nothing else waits; ticks that are missed come once. An `id` in use is set anew. At least 10 ms.
/// Returns `id`, or 0.
std::uintptr_t SetTimer(HWND window, std::uintptr_t id, DWORD milliseconds, TIMERPROC callback);
BOOL KillTimer(HWND window, std::uintptr_t id);

/// Waits without looking at the queue; sent messages wait too.
void Sleep(DWORD milliseconds);
void SleepMicroseconds(DWORD microseconds);

/// Milliseconds of the monotonic clock; wraps.
DWORD GetTickCount();

// --- A loop that is not the layer's -------------------------------------------------------------

/// A descriptor of the calling thread's queue that polls readable when DispatchWaitingMessages has
/// something to do. The layer owns it, for as long as the thread lives. -1 without a desktop.
/// Between two calls of DispatchWaitingMessages the thread counts as idle.
int GetQueueDescriptor();

/// Serves what has been sent, dispatches what has been posted and due timers, and returns without
/// waiting: 1, or 0 once WM_QUIT came up.
BOOL DispatchWaitingMessages();

/// Has the calling thread's loop call `ready(context)` whenever `descriptor` becomes readable
/// (edge-triggered), from the message loop, never from inside a send. The caller keeps the
/// descriptor and removes it before closing it. Returns 0 when it cannot be watched.
BOOL WatchDescriptor(int descriptor, void (*ready)(void*), void* context);
void UnwatchDescriptor(int descriptor);

}  // namespace juntora
