// What the dialog part knows of each dialog of the calling thread.
#pragma once

#include <memory>
#include <vector>

#include "platform/dialog/dialog.h"

namespace juntora::dialog {

struct Dialog {
    DLGPROC procedure = nullptr;
    HWND window = 0;             ///< 0 again once it has been destroyed.
    std::vector<HWND> controls;  ///< In the template's order, which is the tab order.
    HWND focus = 0;              ///< The control that keys go to; 0 for none.
    LRESULT result = 0;          ///< What SetDialogResult gave for the message at hand.
    bool hasBeenShown = false;
    bool hasEnded = false;
    int endResult = 0;
    std::shared_ptr<Dialog> outer;  ///< The modal dialog in whose loop this one's loop runs.

    HWND control(int id) const;
    /// Sends the command, as the control of that number would.
    void command(int id) const;
    /// What escape, the close box and the system's close command come to: the cancel command,
    /// unless its button is disabled.
    void cancel() const;
};

/// Whether the keyboard can go to the control.
bool TakesFocus(HWND control);

/// The dialog of a window of this thread, null for any other. Whoever holds the pointer may see the
/// window go.
std::shared_ptr<Dialog> FindDialog(HWND window);

/// The dialog that a window of this thread is, or is in.
std::shared_ptr<Dialog> DialogAround(HWND window);

/// Makes the window and its controls and sends WM_INITDIALOG; shows nothing. False on failure, or
/// when the dialog was destroyed meanwhile; then nothing is left of it.
bool MakeDialog(const std::shared_ptr<Dialog>& dialog, const DialogTemplate& source, HWND parent,
                LPARAM param);

/// Registers the class of dialogs, once; its windows belong to the dialog that stands in
/// DialogInMaking of their thread at their creation.
void RegisterDialogClass();
inline constexpr char DIALOG_CLASS[] = "#32770";

/// Names the dialog whose window is about to be created, for as long as it lives.
class DialogInMaking {
public:
    explicit DialogInMaking(std::shared_ptr<Dialog> dialog);
    ~DialogInMaking();
    DialogInMaking(const DialogInMaking&) = delete;
    DialogInMaking& operator=(const DialogInMaking&) = delete;
};

}  // namespace juntora::dialog
