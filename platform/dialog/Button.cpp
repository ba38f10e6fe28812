// Push buttons and check boxes.
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/Controls.h"

namespace juntora::dialog {
namespace {

constexpr DWORD KIND = 0xF;  ///< The bits of the style that tell one button from another.

DWORD kindOf(HWND button) { return GetWindowStyle(button) & KIND; }

/// A person's click reaches no control of a disabled window, nor a disabled control.
bool canBeClicked(HWND button) {
    for (HWND window = button; window != 0; window = GetParent(window)) {
        if (!IsWindowEnabled(window)) {
            return false;
        }
    }
    return true;
}

/// The user data of a button is whether it is checked.
void setCheck(HWND button, bool checked) {
    SetWindowUserData(button, checked ? 1 : 0);
    NoteWindowChange(button);
}

void click(HWND button) {
    if (!canBeClicked(button)) {
        return;
    }
    if (kindOf(button) == BS_AUTOCHECKBOX) {
        setCheck(button, GetWindowUserData(button) == 0);
    }
    const auto id = static_cast<WORD>(GetDlgCtrlID(button));
    SendMessageA(GetParent(button), WM_COMMAND, WPARAM{BN_CLICKED} << 16 | id,
                 static_cast<LPARAM>(button));
}

LRESULT dialogCode(HWND button) {
    switch (kindOf(button)) {
        case BS_PUSHBUTTON:
            return DLGC_BUTTON | DLGC_UNDEFPUSHBUTTON;
        case BS_DEFPUSHBUTTON:
            return DLGC_BUTTON | DLGC_DEFPUSHBUTTON;
        default:
            return DLGC_BUTTON;
    }
}

}  // namespace

LRESULT ButtonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case BM_CLICK:
            click(window);
            return 0;
        case BM_GETCHECK:
            return GetWindowUserData(window);
        case BM_SETCHECK:
            setCheck(window, wParam != 0);
            return 0;
        case WM_GETDLGCODE:
            return dialogCode(window);
        default:
            return DefWindowProcA(window, message, wParam, lParam);
    }
}

}  // namespace juntora::dialog
