// The keyboard of dialogs: tab order, mnemonics, the default button on return, cancel on escape.
#include <algorithm>
#include <cctype>
#include <string_view>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/Controls.h"
#include "platform/dialog/DialogState.h"

namespace juntora {
namespace dialog {
namespace {

constexpr WPARAM KEY_TAB = 9;
constexpr WPARAM KEY_RETURN = 13;
constexpr WPARAM KEY_ESCAPE = 27;
constexpr UINT WM_SYSCHAR = 262;  ///< A character with the Alt key.

LRESULT codeOf(HWND control) {
    return control == 0 ? 0 : SendMessageA(control, WM_GETDLGCODE, 0, 0);
}

/// The control behind `start` in the tab order to which the focus can go, `start` itself if there
/// is no other.
HWND nextTabStop(const Dialog& dialog, HWND start) {
    const auto& controls = dialog.controls;
    const auto at = std::ranges::find(controls, start);
    const auto first = (at == controls.end() ? controls.size() - 1
                                             : static_cast<std::size_t>(at - controls.begin()));
    for (std::size_t step = 1; step <= controls.size(); ++step) {
        const HWND candidate = controls[(first + step) % controls.size()];
        if (TakesFocus(candidate)) {
            return candidate;
        }
    }
    return start;
}

bool isPushButton(HWND control) {
    return (codeOf(control) & (DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
}

void pressReturn(const Dialog& dialog) {
    if (isPushButton(dialog.focus)) {
        SendMessageA(dialog.focus, BM_CLICK, 0, 0);
        return;
    }
    for (const HWND control : dialog.controls) {
        if ((codeOf(control) & DLGC_DEFPUSHBUTTON) != 0) {
            SendMessageA(control, BM_CLICK, 0, 0);
            return;
        }
    }
    dialog.command(IDOK);
}

/// The letter behind the first single ampersand, in lower case; 0 for none.
int mnemonicOf(HWND control) {
    char text[512];
    GetWindowTextA(control, text, sizeof text);
    const std::string_view label(text);
    for (std::size_t at = label.find('&'); at != label.npos; at = label.find('&', at + 2)) {
        if (at + 1 < label.size() && label[at + 1] != '&') {
            return std::tolower(static_cast<unsigned char>(label[at + 1]));
        }
    }
    return 0;
}

bool pressMnemonic(Dialog& dialog, WPARAM character) {
    const int letter = character < 256 ? std::tolower(static_cast<int>(character)) : 0;
    for (const HWND control : dialog.controls) {
        const DWORD style = GetWindowStyle(control);
        if ((style & WS_VISIBLE) == 0 || (style & WS_DISABLED) != 0 || letter == 0 ||
            mnemonicOf(control) != letter) {
            continue;
        }
        if ((codeOf(control) & DLGC_BUTTON) != 0) {
            dialog.focus = control;
            SendMessageA(control, BM_CLICK, 0, 0);
        } else {  // A label stands before what it labels.
            dialog.focus = nextTabStop(dialog, control);
        }
        return true;
    }
    return false;
}

bool pressKey(Dialog& dialog, WPARAM key) {
    switch (key) {
        case KEY_TAB:
            dialog.focus = nextTabStop(dialog, dialog.focus);
            return true;
        case KEY_RETURN:
            pressReturn(dialog);
            return true;
        case KEY_ESCAPE:
            dialog.cancel();
            return true;
        default:
            return false;
    }
}

}  // namespace
}  // namespace dialog

BOOL IsDialogMessageA(HWND dialog, const MSG* message) {
    const auto found = dialog::FindDialog(dialog);
    const bool isKey = message->message == WM_KEYDOWN || message->message == WM_CHAR ||
                       message->message == dialog::WM_SYSCHAR;
    if (!found || !isKey || !IsWindowEnabled(dialog) ||
        dialog::DialogAround(message->hwnd) != found) {
        return 0;
    }
    if (std::ranges::find(found->controls, message->hwnd) != found->controls.end()) {
        found->focus = message->hwnd;
    }
    if (message->message == WM_KEYDOWN) {
        return dialog::pressKey(*found, message->wParam);
    }
    // A list takes plain characters for itself.
    const bool forControl =
        message->message == WM_CHAR && (dialog::codeOf(found->focus) & dialog::DLGC_WANTCHARS) != 0;
    return !forControl && dialog::pressMnemonic(*found, message->wParam);
}

}  // namespace juntora
