// The dialog that a message box is where a screen shows the desktop.
#pragma once

#include "platform/types.h"

namespace juntora::dialog {

struct BoxButton {
    int id;
    const char* name;   ///< Without a mnemonic's mark, as it is printed.
    const char* label;  ///< As the button shows it.
};

/// The button that return presses and that answers for a person who isn't there: the first one
/// where the flags ask for one that the box does not have.
const BoxButton& DefaultButton(UINT flags);

/// What ShowMessageBox returns when nobody could see the box.
inline constexpr int NOT_SHOWN = 0;

/// Shows the box and waits for the answer in a message loop of its own; the button's id is the
/// result. A box that no screen has shown for ten seconds on end is taken back.
int ShowMessageBox(HWND owner, const char* text, const char* caption, UINT flags);

}  // namespace juntora::dialog
