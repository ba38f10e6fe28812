// The words of the platform: widths of handles, message parameters and results.
#pragma once

#include <cstdint>

namespace juntora {

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using UINT = std::uint32_t;
using DWORD = std::uint32_t;
using LONG = std::int32_t;

/// A window of the desktop, valid in every process on it: 16 bits of index below 16 bits of
/// generation. Never 0 and never all ones; a handle of a window that has gone is never given out
/// again for another one until its index has been used 32,767 times more.
using HWND = std::uint32_t;

/// A kernel object or a module as this process holds it; meaningless in another process.
using HANDLE = void*;

/// Parameters are as wide as a pointer, because a thread may hand itself a heap text in one.
/// Between processes all 64 bits travel; what they point at does not (see SendMessageA).
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;

/// The result of a window procedure. Between processes only its low 32 bits travel, sign-extended.
using LRESULT = std::intptr_t;

using WNDPROC = LRESULT (*)(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
using TIMERPROC = void (*)(HWND window, UINT message, std::uintptr_t id, DWORD milliseconds);

struct POINT {
    LONG x;
    LONG y;
};

/// Pixels; right and bottom lie just outside.
struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

/// A message as a loop takes it from its queue.
struct MSG {
    HWND hwnd;  ///< 0 for a message of the thread itself, such as WM_QUIT.
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
    DWORD time;  ///< Milliseconds of the monotonic clock at which it was taken.
    POINT pt;
};

}  // namespace juntora
