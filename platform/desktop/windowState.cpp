// What a window is like: texts, style, place, state.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/desktop/Address.h"
#include "platform/desktop/LocalWindows.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

/// The slot and details of a window that stands; null slot otherwise.
struct Place {
    Segment* segment = nullptr;
    WindowSlot* slot = nullptr;
    WindowDetails* details = nullptr;
    explicit operator bool() const { return slot != nullptr; }
};

Place placeOf(HWND window) {
    Attachment* attachment = Attachment::get();
    if (attachment == nullptr || !isCurrent(attachment->segment(), window)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return {};
    }
    Segment& segment = attachment->segment();
    const std::uint32_t index = indexOf(window);
    return {&segment, &segment.windows[index], &segment.details[index]};
}

int copyOut(std::string_view text, char* buffer, int capacity) {
    if (capacity <= 0) {
        return 0;
    }
    const std::size_t length = std::min(text.size(), static_cast<std::size_t>(capacity - 1));
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}

bool hasStyle(HWND window, DWORD style) {
    const Place place = placeOf(window);
    return place && (place.slot->style.load() & style) != 0;
}

void noteChange(const Place& place) {
    place.slot->changes.fetch_add(1);
    noteViewChanged(*place.segment);
}

void changeStyle(const Place& place, DWORD set, DWORD clear) {
    place.slot->style.fetch_and(~clear);
    place.slot->style.fetch_or(set);
    noteChange(place);
}

void moveInOrder(const Place& place, bool toFront) {
    place.details->order = toFront ? place.segment->frontOrder.fetch_add(1) + 1
                                   : place.segment->backOrder.fetch_sub(1) - 1;
    place.slot->changes.fetch_add(1);
    noteWindowsChanged(*place.segment);
}

/// To the top of the order, and in front if it is a top-level window.
void activate(const Place& place, HWND window) {
    if ((place.slot->style.load() & WS_CHILD) == 0) {
        place.segment->foreground = window;
    }
    moveInOrder(place, true);
}

LRESULT storeText(HWND window, const char* text) {
    const Place place = placeOf(window);
    if (!place || text == nullptr) {
        return 0;
    }
    const SegmentLock lock(*place.segment);
    if (!lock || !isCurrent(*place.segment, window)) {
        return 0;
    }
    setTitle(*place.segment, indexOf(window), text);
    return 1;
}

/// Returns the icon before. Small and large are one here: a viewer has pictures that scale.
LRESULT storeIcon(HWND window, int icon) {
    const Place place = placeOf(window);
    const LRESULT before = place ? place.details->icon.exchange(icon) : 0;
    if (place) {
        noteChange(place);
    }
    return before;
}

/// What the segment holds as the window's text.
int storedText(HWND window, char* buffer, int capacity) {
    const Place place = placeOf(window);
    if (!place || buffer == nullptr) {
        return 0;
    }
    const SegmentLock lock(*place.segment);
    return lock ? copyOut(titleOf(*place.segment, indexOf(window)), buffer, capacity) : 0;
}

LRESULT systemCommand(HWND window, WPARAM command) {
    switch (command & 0xFFF0) {
        case SC_CLOSE:
            SendMessageA(window, WM_CLOSE, 0, 0);
            break;
        case SC_MINIMIZE:
            ShowWindow(window, SW_MINIMIZE);
            break;
        case SC_RESTORE:
            ShowWindow(window, SW_RESTORE);
            break;
        default:
            break;
    }
    return 0;
}

}  // namespace
}  // namespace desktop

using desktop::placeOf;

int GetClassNameA(HWND window, char* buffer, int capacity) {
    const auto place = placeOf(window);
    return place ? desktop::copyOut(place.details->className, buffer, capacity) : 0;
}

int GetWindowTextA(HWND window, char* buffer, int capacity) {
    if (capacity <= 0) {
        return 0;
    }
    buffer[0] = '\0';
    if (desktop::localWindow(window) != nullptr) {
        return static_cast<int>(SendMessageA(window, WM_GETTEXT, static_cast<WPARAM>(capacity),
                                             reinterpret_cast<LPARAM>(buffer)));
    }
    return desktop::storedText(window, buffer, capacity);
}

BOOL SetWindowTextA(HWND window, const char* text) {
    return SendMessageA(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) != 0 ? 1 : 0;
}

int GetDlgCtrlID(HWND window) {
    const auto place = placeOf(window);
    return place ? place.details->id.load() : 0;
}

DWORD GetWindowThreadProcessId(HWND window, DWORD* processId) {
    const auto place = placeOf(window);
    const std::uint32_t thread = place ? place.slot->thread.load() % desktop::MAX_THREADS : 0;
    if (processId != nullptr) {
        *processId = place ? place.segment->threads[thread].kernelId.load() : 0;
    }
    return place ? thread + 1 : 0;
}

DWORD GetWindowStyle(HWND window) {
    const auto place = placeOf(window);
    return place ? place.slot->style.load() : 0;
}

BOOL GetWindowRect(HWND window, RECT* rect) {
    const auto place = placeOf(window);
    if (!place) {
        return 0;
    }
    const LONG left = place.details->x;
    const LONG top = place.details->y;
    *rect = {left, top, left + place.details->width, top + place.details->height};
    return 1;
}

BOOL GetClientRect(HWND window, RECT* rect) {
    const auto place = placeOf(window);
    if (!place) {
        return 0;
    }
    *rect = {0, 0, place.details->width, place.details->height};
    return 1;
}

BOOL IsWindowVisible(HWND window) {
    for (HWND at = window; at != 0; at = GetParent(at)) {
        if (!desktop::hasStyle(at, WS_VISIBLE)) {
            return 0;
        }
    }
    return window != 0 ? 1 : 0;
}

BOOL IsIconic(HWND window) { return desktop::hasStyle(window, WS_MINIMIZE) ? 1 : 0; }

void ModifyWindowStyle(HWND window, DWORD remove, DWORD add) {
    if (const auto place = placeOf(window)) {
        desktop::changeStyle(place, add, remove);
        NoteWindowChange(window);
    }
}

BOOL IsWindowEnabled(HWND window) {
    const auto place = placeOf(window);
    return place && (place.slot->style.load() & WS_DISABLED) == 0 ? 1 : 0;
}

BOOL EnableWindow(HWND window, BOOL enable) {
    const auto place = placeOf(window);
    if (!place) {
        return 0;
    }
    const bool wasDisabled = (place.slot->style.load() & WS_DISABLED) != 0;
    desktop::changeStyle(place, enable ? 0 : WS_DISABLED, enable ? WS_DISABLED : 0);
    if (wasDisabled == (enable != 0)) {
        SendMessageA(window, WM_ENABLE, enable ? 1 : 0, 0);
    }
    return wasDisabled ? 1 : 0;
}

BOOL ShowWindow(HWND window, int command) {
    const auto place = placeOf(window);
    if (!place) {
        return 0;
    }
    const bool wasVisible = (place.slot->style.load() & WS_VISIBLE) != 0;
    const bool show = command != SW_HIDE;
    if (show && (place.slot->style.load() & WS_CHILD) == 0) {
        EnsureScreen();  // Even for a window that is visible: the last screen may have gone.
    }
    if (show != wasVisible) {
        SendMessageA(window, WM_SHOWWINDOW, show ? 1 : 0, 0);
    }
    switch (command) {
        case SW_HIDE:
            desktop::changeStyle(place, 0, WS_VISIBLE);
            break;
        case SW_SHOWMINIMIZED:
        case SW_MINIMIZE:
        case SW_SHOWMINNOACTIVE:
            desktop::changeStyle(place, WS_VISIBLE | WS_MINIMIZE, 0);
            break;
        case SW_SHOWNORMAL:
        case SW_RESTORE:
            desktop::changeStyle(place, WS_VISIBLE, WS_MINIMIZE);
            desktop::activate(place, window);
            break;
        case SW_SHOW:
            desktop::changeStyle(place, WS_VISIBLE, 0);
            desktop::activate(place, window);
            break;
        default:
            desktop::changeStyle(place, WS_VISIBLE, 0);
            break;
    }
    return wasVisible ? 1 : 0;
}

BOOL SetWindowPos(HWND window, HWND insertAfter, int x, int y, int width, int height, UINT flags) {
    const auto place = placeOf(window);
    if (!place) {
        return 0;
    }
    if ((flags & SWP_NOMOVE) == 0) {
        place.details->x = x;
        place.details->y = y;
    }
    if ((flags & SWP_NOSIZE) == 0) {
        place.details->width = width;
        place.details->height = height;
    }
    if ((flags & SWP_NOZORDER) == 0) {
        desktop::moveInOrder(place, insertAfter != HWND_BOTTOM);
    }
    NoteWindowChange(window);
    return 1;
}

BOOL SetForegroundWindow(HWND window) {
    const auto place = placeOf(window);
    if (!place) {
        return 0;
    }
    place.segment->foreground = window;
    desktop::moveInOrder(place, true);
    return 1;
}

HWND GetForegroundWindow() {
    desktop::Attachment* attachment = desktop::Attachment::get();
    const HWND window = attachment == nullptr ? 0 : attachment->segment().foreground.load();
    return IsWindow(window) ? window : 0;
}

DWORD GetWindowChangeCount(HWND window) {
    const auto place = placeOf(window);
    return place ? place.slot->changes.load() : 0;
}

void NoteWindowChange(HWND window) {
    if (const auto place = placeOf(window)) {
        desktop::noteChange(place);
    }
}

LRESULT DefWindowProcA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_CLOSE:
            DestroyWindow(window);
            return 0;
        case WM_SYSCOMMAND:
            return desktop::systemCommand(window, wParam);
        case WM_SETTEXT:
            return desktop::storeText(window, reinterpret_cast<const char*>(lParam));
        case WM_GETTEXT:
            return desktop::storedText(window, reinterpret_cast<char*>(lParam),
                                       static_cast<int>(wParam));
        case WM_SETICON:
            return desktop::storeIcon(window, static_cast<int>(lParam));
        case WM_GETTEXTLENGTH: {
            char text[desktop::TITLE_BYTES];
            return desktop::storedText(window, text, sizeof text);
        }
        default:
            return 0;
    }
}

}  // namespace juntora
