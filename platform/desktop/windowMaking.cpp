// Making and unmaking windows.
#include <memory>
#include <vector>

#include "platform/desktop/Address.h"
#include "platform/desktop/LocalWindows.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/Sweep.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

HWND makeShared(Queue& queue, const WindowMaking& making) {
    const SegmentLock lock(queue.segment());
    if (!lock) {
        return 0;
    }
    HWND window = makeWindow(queue.segment(), making);
    if (window == 0) {
        sweepAll(queue.desktop());
        window = makeWindow(queue.segment(), making);
    }
    return window;
}

void unmakeShared(Queue& queue, HWND window) {
    const SegmentLock lock(queue.segment());
    if (lock && isCurrent(queue.segment(), window)) {
        unmakeWindow(queue.segment(), indexOf(window));
    }
}

/// Windows of the calling thread below `parent`, front first.
std::vector<HWND> childrenOf(HWND parent) {
    std::vector<HWND> children;
    for (HWND child = GetWindow(parent, GW_CHILD); child != 0;
         child = GetWindow(child, GW_HWNDNEXT)) {
        children.push_back(child);
    }
    return children;
}

bool isOwn(Queue& queue, HWND window) {
    Address owner{};
    return addressOf(queue.segment(), window, &owner) && owner.thread == queue.thread();
}

void destroy(Queue& queue, HWND window) {
    callWindow(window, WM_DESTROY, 0, 0);
    for (const HWND child : childrenOf(window)) {
        if (isOwn(queue, child)) {
            destroy(queue, child);
        }
    }
    callWindow(window, WM_NCDESTROY, 0, 0);
    queue.timers().killAllOf(window);
    if (LocalWindow* local = localWindow(window)) {
        *local = {};
    }
    unmakeShared(queue, window);
}

}  // namespace
}  // namespace desktop

HWND CreateWindowExA(DWORD extendedStyle, const char* className, const char* title, DWORD style,
                     int x, int y, int width, int height, HWND parent, int id, void* param) {
    const WNDPROC procedure = className == nullptr ? nullptr : desktop::classProcedure(className);
    if (procedure == nullptr) {
        SetLastError(ERROR_CANNOT_FIND_WND_CLASS);
        return 0;
    }
    desktop::Queue* queue = desktop::Queue::current();
    const HWND above = parent == GetDesktopWindow() ? 0 : parent;
    if (queue == nullptr || (above != 0 && !desktop::isCurrent(queue->segment(), above))) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    const bool isChild = (style & WS_CHILD) != 0;
    const HWND window = desktop::makeShared(*queue, {queue->thread(),
                                                     queue->generation(),
                                                     className,
                                                     title == nullptr ? "" : title,
                                                     style,
                                                     extendedStyle,
                                                     isChild ? above : 0,
                                                     isChild ? 0 : above,
                                                     id,
                                                     desktop::classIcon(className),
                                                     {x, y, x + width, y + height},
                                                     isChild});
    if (window == 0) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    desktop::localEntry(window) = {window, procedure, 0};
    if (!isChild && (style & WS_VISIBLE) != 0) {
        EnsureScreen();
    }
    if (desktop::callWindow(window, WM_CREATE, 0, reinterpret_cast<LPARAM>(param)) == -1) {
        DestroyWindow(window);
        return 0;
    }
    return window;
}

BOOL DestroyWindow(HWND window) {
    desktop::Queue* queue = desktop::Queue::current();
    if (queue == nullptr || !desktop::isOwn(*queue, window)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    desktop::destroy(*queue, window);
    return 1;
}

BOOL IsWindow(HWND window) {
    if (window == GetDesktopWindow()) {
        return 1;
    }
    desktop::Attachment* attachment = desktop::Attachment::get();
    desktop::Address owner{};
    return attachment != nullptr && desktop::addressOrSweep(attachment->segment(), window, &owner)
               ? 1
               : 0;
}

}  // namespace juntora
