// The windows of the segment: handles, the search by class and title, and their making and
// unmaking. Everything here but indexOf and isLive wants the segment's lock.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/desktop/Layout.h"

namespace juntora::desktop {

/// The window's index, 0 when the value cannot be a handle.
inline std::uint32_t indexOf(HWND window) {
    const std::uint32_t index = window & 0xFFFF;
    return index < MAX_WINDOWS && (window >> 16) < 0x8000 ? index : 0;
}

/// Whether the handle is the one that stands there now. Says nothing of its thread.
inline bool isCurrent(const Segment& segment, HWND window) {
    const std::uint32_t index = indexOf(window);
    return index != 0 && segment.windows[index].live.load(std::memory_order_acquire) == window;
}

struct WindowMaking {
    std::uint32_t thread;
    std::uint32_t threadGeneration;
    std::string_view className;
    std::string_view title;
    DWORD style;
    DWORD extendedStyle;
    HWND parent;
    HWND owner;
    int id;
    int icon;
    RECT place;   ///< left, top, and right and bottom as ends.
    bool behind;  ///< At the bottom of its siblings, else at the top.
};

/// 0 when every index is in use.
HWND makeWindow(Segment& segment, const WindowMaking& making);
void unmakeWindow(Segment& segment, std::uint32_t index);

/// The title as it now is; valid while the lock is held.
std::string_view titleOf(const Segment& segment, std::uint32_t index);
void setTitle(Segment& segment, std::uint32_t index, std::string_view title);

/// The desktop's child in front of all others of that class and title, whatever its thread's
/// state, at or behind `order`; its index, 0 for none.
std::uint32_t findByClassAndTitle(Segment& segment, std::string_view className,
                                  std::string_view title, std::int64_t order);

/// After a death under the lock: drops what is not live and links the rest anew.
void rebuildWindowIndex(Segment& segment);

/// Tells the viewer that there is something new to show.
void noteViewChanged(Segment& segment);

/// Tells all who remember an answer to a search that it may have changed, and the viewer too.
inline void noteWindowsChanged(Segment& segment) {
    segment.windowChanges.fetch_add(1);
    noteViewChanged(segment);
}

bool equalsIgnoringCase(std::string_view left, std::string_view right);

}  // namespace juntora::desktop
