// From a template to windows.
#include <algorithm>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/Controls.h"
#include "platform/dialog/DialogState.h"
#include "platform/dialog/TextSize.h"

namespace juntora {
namespace dialog {
namespace {

/// What dialogs are centred on. A screen places centred windows on its display by their style.
constexpr int SCREEN_WIDTH = 1024;
constexpr int SCREEN_HEIGHT = 768;

int pixelsAcross(int units) { return (units * FONT_WIDTH + 2) / 4; }
int pixelsDown(int units) { return (units * FONT_HEIGHT + 4) / 8; }

HWND createWindow(const DialogTemplate& source, HWND parent) {
    const int width = pixelsAcross(source.width);
    const int height = pixelsDown(source.height);
    const bool isCentred = (source.style & DS_CENTER) != 0;
    return CreateWindowExA(source.extendedStyle, DIALOG_CLASS, source.title,
                           source.style & ~WS_VISIBLE, isCentred ? (SCREEN_WIDTH - width) / 2 : 0,
                           isCentred ? (SCREEN_HEIGHT - height) / 2 : 0, width, height, parent, 0);
}

/// An icon is known by its resource number, which other processes read as the control's text.
std::string titleOf(const DialogControl& control) {
    return control.icon == 0 ? control.text : "#" + std::to_string(control.icon);
}

bool createControls(Dialog& dialog, const DialogTemplate& source) {
    RegisterControlClasses();
    for (const DialogControl& control : source.controls) {
        const HWND window = CreateWindowExA(0, control.className, titleOf(control).c_str(),
                                            control.style | WS_CHILD, pixelsAcross(control.x),
                                            pixelsDown(control.y), pixelsAcross(control.width),
                                            pixelsDown(control.height), dialog.window, control.id);
        if (window == 0) {
            return false;
        }
        dialog.controls.push_back(window);
    }
    return true;
}

HWND firstTabStop(const Dialog& dialog) {
    const auto found = std::ranges::find_if(dialog.controls, TakesFocus);
    return found == dialog.controls.end() ? 0 : *found;
}

}  // namespace

bool MakeDialog(const std::shared_ptr<Dialog>& dialog, const DialogTemplate& source, HWND parent,
                LPARAM param) {
    RegisterDialogClass();
    {
        const DialogInMaking making(dialog);
        if (createWindow(source, parent) == 0) {
            return false;
        }
    }
    if (!createControls(*dialog, source)) {
        DestroyWindow(dialog->window);
        return false;
    }
    dialog->focus = firstTabStop(*dialog);
    SendMessageA(dialog->window, WM_INITDIALOG, dialog->focus, param);
    return dialog->window != 0;
}

}  // namespace dialog

HWND CreateDialogFromTemplate(const DialogTemplate& dialog, HWND parent, DLGPROC procedure,
                              LPARAM param) {
    const auto made = std::make_shared<dialog::Dialog>();
    made->procedure = procedure;
    if (!dialog::MakeDialog(made, dialog, parent, param)) {
        return 0;
    }
    if ((dialog.style & WS_VISIBLE) != 0 && !made->hasBeenShown) {
        ShowWindow(made->window, SW_SHOWNORMAL);
    }
    return made->window;
}

}  // namespace juntora
