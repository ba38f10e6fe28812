// The window classes that dialogs are made of.
#pragma once

#include "platform/types.h"

namespace juntora::dialog {

/// Makes "Button", "Static" and "ListBox" known to this process, once.
void RegisterControlClasses();

LRESULT ButtonProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT StaticProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT ListBoxProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Writes a window's own menu as VIEW_GET_MENU has it, to `buffer` of MESSAGE_TEXT_BYTES; returns
/// the length.
LRESULT CopySystemMenu(HWND window, char* buffer);

/// What a control answers to WM_GETDLGCODE, so that a dialog knows how to treat it.
enum DialogCode : LRESULT {
    DLGC_WANTARROWS = 0x0001,
    DLGC_DEFPUSHBUTTON = 0x0010,
    DLGC_UNDEFPUSHBUTTON = 0x0020,
    DLGC_WANTCHARS = 0x0080,
    DLGC_STATIC = 0x0100,
    DLGC_BUTTON = 0x2000,
};

}  // namespace juntora::dialog
