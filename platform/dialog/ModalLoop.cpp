// Modal dialogs and the message loop that runs while one stands.
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/DialogState.h"

namespace juntora {
namespace dialog {
namespace {

/// The modal dialog whose loop runs innermost in this thread.
thread_local std::shared_ptr<Dialog> t_innermost;

/// Disables the owner of a modal dialog, so that a person has to answer the dialog first.
class DisabledOwner {
public:
    explicit DisabledOwner(HWND owner)
        : m_owner(owner != 0 && owner != GetDesktopWindow() && IsWindowEnabled(owner) ? owner : 0) {
        if (m_owner != 0) {
            EnableWindow(m_owner, 0);
        }
    }
    ~DisabledOwner() {
        if (m_owner != 0) {
            EnableWindow(m_owner, 1);
        }
    }
    DisabledOwner(const DisabledOwner&) = delete;
    DisabledOwner& operator=(const DisabledOwner&) = delete;

private:
    const HWND m_owner;
};

/// Makes `dialog` the innermost one for as long as it lives.
class ModalScope {
public:
    explicit ModalScope(std::shared_ptr<Dialog> dialog) {
        dialog->outer = t_innermost;
        t_innermost = std::move(dialog);
    }
    ~ModalScope() { t_innermost = t_innermost->outer; }
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
};

void end(Dialog& dialog, int result) {
    dialog.hasEnded = true;
    dialog.endResult = result;
    ShowWindow(dialog.window, SW_HIDE);
}

/// The loops that run inside the one of `dialog` end with it: otherwise a box that stands forgotten
/// would keep a program from ending until a person closes it.
void endThoseInside(const Dialog& dialog) {
    const Dialog* outermost = t_innermost.get();
    while (outermost && outermost != &dialog) {
        outermost = outermost->outer.get();
    }
    for (Dialog* at = t_innermost.get(); outermost && at != outermost; at = at->outer.get()) {
        if (!at->hasEnded) {
            end(*at, IDCANCEL);
        }
    }
}

void dispatch(const MSG& message) {
    const auto around = DialogAround(message.hwnd);
    if (around && IsDialogMessageA(around->window, &message)) {
        return;
    }
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

/// Sets the end result where the loop ends for a reason of its own.
void runLoop(Dialog& dialog) {
    MSG message{};
    while (!dialog.hasEnded && dialog.window != 0) {
        const BOOL got = GetMessageA(&message, 0, 0, 0);
        if (got > 0) {
            dispatch(message);
            continue;
        }
        dialog.hasEnded = true;
        dialog.endResult = got < 0 ? -1 : IDCANCEL;
        if (got == 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
        }
    }
    if (!dialog.hasEnded) {
        dialog.endResult = IDCANCEL;
    }
}

int runModal(const std::shared_ptr<Dialog>& dialog, const DialogTemplate& source, HWND parent,
             LPARAM param) {
    const ModalScope scope(dialog);
    {
        const DisabledOwner owner(parent);
        if (!MakeDialog(dialog, source, parent, param)) {
            return -1;
        }
        if (!dialog->hasEnded && !dialog->hasBeenShown) {
            ShowWindow(dialog->window, SW_SHOWNORMAL);
        }
        runLoop(*dialog);
    }
    if (dialog->window != 0) {
        DestroyWindow(dialog->window);
    }
    return dialog->endResult;
}

}  // namespace
}  // namespace dialog

int RunModalDialog(const DialogTemplate& dialog, HWND parent, DLGPROC procedure, LPARAM param) {
    const auto made = std::make_shared<dialog::Dialog>();
    made->procedure = procedure;
    return dialog::runModal(made, dialog, parent, param);
}

BOOL EndDialog(HWND dialog, int result) {
    const auto found = dialog::FindDialog(dialog);
    if (!found) {
        return 0;
    }
    dialog::endThoseInside(*found);
    dialog::end(*found, result);
    // The loop may be waiting inside of which this call came, as a message that was sent to it.
    constexpr UINT WM_NULL = 0;
    PostMessageA(dialog, WM_NULL, 0, 0);
    return 1;
}

}  // namespace juntora
