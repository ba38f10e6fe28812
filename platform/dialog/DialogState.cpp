// The window procedure of dialogs: the program's procedure first, then what every dialog does.
#include "platform/dialog/DialogState.h"

#include <unordered_map>
#include <utility>

#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "platform/dialog/Controls.h"

namespace juntora {
namespace dialog {
namespace {

// By the thread, as windows are: no other thread ever runs their procedures.
thread_local std::unordered_map<HWND, std::shared_ptr<Dialog>> t_dialogs;
thread_local std::shared_ptr<Dialog> t_inMaking;

LRESULT defaultHandling(const Dialog& dialog, HWND window, UINT message, WPARAM wParam,
                        LPARAM lParam) {
    switch (message) {
        case WM_CLOSE:
            dialog.cancel();
            return 0;
        case WM_INITDIALOG:
        case WM_COMMAND:
            return 0;
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

LRESULT handle(Dialog& dialog, HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    // A handler may cause further messages to its own dialog: each has a result of its own.
    const LRESULT outerResult = std::exchange(dialog.result, 0);
    const BOOL handled = dialog.procedure(window, message, wParam, lParam);
    const LRESULT result = std::exchange(dialog.result, outerResult);
    if (message == WM_INITDIALOG) {
        return handled;
    }
    return handled ? result : defaultHandling(dialog, window, message, wParam, lParam);
}

LRESULT dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE && t_inMaking) {
        t_inMaking->window = window;
        t_dialogs.emplace(window, std::exchange(t_inMaking, nullptr));
    }
    const std::shared_ptr<Dialog> dialog = FindDialog(window);
    if (!dialog) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    if (message == VIEW_GET_MENU) {
        return CopySystemMenu(window, reinterpret_cast<char*>(lParam));
    }
    if (message == WM_SHOWWINDOW && wParam != 0) {
        dialog->hasBeenShown = true;
        PostMessageA(window, WM_PAINT, 0, 0);
    }
    const LRESULT result = handle(*dialog, window, message, wParam, lParam);
    if (message == WM_NCDESTROY) {
        dialog->window = 0;
        t_dialogs.erase(window);
    }
    return result;
}

}  // namespace

HWND Dialog::control(int id) const {
    for (const HWND candidate : controls) {
        if (GetDlgCtrlID(candidate) == id) {
            return candidate;
        }
    }
    return 0;
}

void Dialog::command(int id) const {
    SendMessageA(window, WM_COMMAND, static_cast<WPARAM>(id), static_cast<LPARAM>(control(id)));
}

void Dialog::cancel() const {
    const HWND button = control(IDCANCEL);
    if (button == 0 || IsWindowEnabled(button)) {
        command(IDCANCEL);
    }
}

bool TakesFocus(HWND control) {
    constexpr DWORD NEEDED = WS_TABSTOP | WS_VISIBLE;
    return (GetWindowStyle(control) & (NEEDED | WS_DISABLED)) == NEEDED;
}

std::shared_ptr<Dialog> FindDialog(HWND window) {
    const auto found = t_dialogs.find(window);
    return found == t_dialogs.end() ? nullptr : found->second;
}

std::shared_ptr<Dialog> DialogAround(HWND window) {
    for (HWND at = window; at != 0; at = GetParent(at)) {
        if (auto dialog = FindDialog(at)) {
            return dialog;
        }
    }
    return nullptr;
}

void RegisterDialogClass() {
    constexpr int ARROW = 32512;
    static const WORD registered = [] {
        const WNDCLASSA dialogs{CS_DBLCLKS, dialogProcedure, 0, ARROW, 0, DIALOG_CLASS};
        return RegisterClassA(&dialogs);
    }();
    static_cast<void>(registered);
}

DialogInMaking::DialogInMaking(std::shared_ptr<Dialog> dialog) { t_inMaking = std::move(dialog); }
DialogInMaking::~DialogInMaking() { t_inMaking.reset(); }

}  // namespace dialog

void SetDialogResult(HWND dialog, LRESULT result) {
    if (const auto found = dialog::FindDialog(dialog)) {
        found->result = result;
    }
}

}  // namespace juntora
