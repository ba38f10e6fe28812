#include "platform/desktop/LocalWindows.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <map>
#include <mutex>
#include <string>

#include "platform/desktop/CallOut.h"
#include "platform/desktop/Queue.h"
#include "platform/desktop/WindowIndex.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

/// By index; pages that no window of this process uses are never touched.
LocalWindow g_windows[MAX_WINDOWS];

struct LessIgnoringCase {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const {
        return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                            [](char a, char b) {
                                                return std::tolower(static_cast<unsigned char>(a)) <
                                                       std::tolower(static_cast<unsigned char>(b));
                                            });
    }
};

struct WindowClass {
    WNDPROC procedure = nullptr;
    int icon = 0;
};

struct Classes {
    std::mutex mutex;
    std::map<std::string, WindowClass, LessIgnoringCase> byName;
};

Classes& classes() {
    static auto* const all = new Classes;  // Static objects may make windows until the very end.
    return *all;
}

WindowClass classNamed(std::string_view className) {
    Classes& all = classes();
    const std::lock_guard guard(all.mutex);
    const auto found = all.byName.find(className);
    return found == all.byName.end() ? WindowClass{} : found->second;
}

}  // namespace

LocalWindow* localWindow(HWND window) {
    LocalWindow& entry = g_windows[indexOf(window)];
    return entry.window == window && window != 0 ? &entry : nullptr;
}

LocalWindow& localEntry(HWND window) { return g_windows[indexOf(window)]; }

WNDPROC classProcedure(std::string_view className) { return classNamed(className).procedure; }
int classIcon(std::string_view className) { return classNamed(className).icon; }

LRESULT callWindow(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LocalWindow* local = localWindow(window);
    if (local == nullptr) {
        return 0;
    }
    LRESULT result = 0;
    callOut("message", message,
            [&] { result = local->procedure(window, message, wParam, lParam); });
    return result;
}

}  // namespace desktop

WORD RegisterClassA(const WNDCLASSA* windowClass) {
    const char* name = windowClass->lpszClassName;
    if (name == nullptr || *name == '\0' || std::strlen(name) >= desktop::CLASS_NAME_BYTES ||
        windowClass->lpfnWndProc == nullptr) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    desktop::Classes& all = desktop::classes();
    const std::lock_guard guard(all.mutex);
    if (!all.byName
             .try_emplace(name, desktop::WindowClass{windowClass->lpfnWndProc, windowClass->icon})
             .second) {
        SetLastError(ERROR_CLASS_ALREADY_EXISTS);
        return 0;
    }
    return static_cast<WORD>(desktop::MAX_NAMES + all.byName.size());
}

LPARAM GetWindowUserData(HWND window) {
    const desktop::LocalWindow* local = desktop::localWindow(window);
    return local == nullptr ? 0 : local->userData;
}

void SetWindowUserData(HWND window, LPARAM value) {
    if (desktop::LocalWindow* local = desktop::localWindow(window)) {
        local->userData = value;
    }
}

WNDPROC SetWindowProc(HWND window, WNDPROC procedure) {
    desktop::LocalWindow* local = desktop::localWindow(window);
    if (local == nullptr || procedure == nullptr) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return nullptr;
    }
    const WNDPROC before = local->procedure;
    local->procedure = procedure;
    return before;
}

LRESULT CallWindowProcA(WNDPROC procedure, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam) {
    return procedure(window, message, wParam, lParam);
}

}  // namespace juntora
