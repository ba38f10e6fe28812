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

/// Shows the box and waits for the answer in a message loop of its own; the button's id is the
/// result. A box that nobody sees is taken back: NOT_SHOWN (UnseenBox.h).
int ShowMessageBox(HWND owner, const char* text, const char* caption, UINT flags);

}  // namespace juntora::dialog
