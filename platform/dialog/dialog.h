// Dialogs by template, message boxes and the string table, all on the model of window.h: complete
// without any display.
#pragma once

#include <span>

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

/// A control of a template. Position and size are in dialog units of the template's font.
struct DialogControl {
    int id;                 ///< -1 for none.
    const char* className;  ///< "Button", "Static" or "ListBox".
    const char* text;
    DWORD style;  ///< WS_CHILD is implied; WS_VISIBLE is not.
    int x;
    int y;
    int width;
    int height;
    int icon = 0;  ///< Resource number shown by a Static with SS_ICON.
};

struct DialogTemplate {
    int id;
    const char* title;
    DWORD style;
    DWORD extendedStyle;
    int width;
    int height;
    const char* fontName;
    int fontPoints;
    std::span<const DialogControl> controls;
};

struct StringResource {
    int id;
    const char* text;
};

/// Makes a program's resources known; they are kept by reference and live as long as the process.
void RegisterResources(std::span<const DialogTemplate> templates,
                       std::span<const StringResource> strings);
const DialogTemplate* FindDialogTemplate(int id);
/// Copies a string of the table; returns its length, 0 (and an empty buffer) if there is none.
int LoadStringA(int id, char* buffer, int capacity);

/// Handles a message of a dialog; returns non-zero when it has, with the result through
/// SetDialogResult. As the platform's: WM_INITDIALOG first, then everything.
using DLGPROC = BOOL (*)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

/// Makes a modeless dialog and its controls, all in the calling thread, and sends WM_INITDIALOG
/// with `param`. Shown if the template has WS_VISIBLE. 0 on failure.
HWND CreateDialogFromTemplate(const DialogTemplate& dialog, HWND parent, DLGPROC procedure,
                              LPARAM param);

/// The same, then runs the thread's message loop until EndDialog; the owner is disabled meanwhile.
/// A dialog that is not visible after WM_INITDIALOG is shown by the loop, unless it has been hidden
/// or minimised by then. Returns EndDialog's result, -1 on failure. WM_QUIT ends it with IDCANCEL
/// and is posted again.
int RunModalDialog(const DialogTemplate& dialog, HWND parent, DLGPROC procedure, LPARAM param);

/// Ends the modal loop of `dialog` once the present message has been handled.
BOOL EndDialog(HWND dialog, int result);

/// The result that the dialog's window procedure gives for the message at hand.
void SetDialogResult(HWND dialog, LRESULT result);

/// Keyboard of a dialog: tab order, mnemonics, the default button on return and cancel on escape.
/// Returns non-zero when the message has been dealt with.
BOOL IsDialogMessageA(HWND dialog, const MSG* message);

/// Shows a box with the buttons of `flags` and waits for the answer in a message loop of its own;
/// the button's id is the result. Where no screen shows this desktop, and none can be counted on to
/// come (view.h: EnsureScreen), the text goes to standard error and the default button is the
/// answer, at once; so it is for a box that nobody has seen for ten seconds, and for one inside of
/// eight others. One that is ended with the program answers as its escape key does.
int MessageBoxA(HWND owner, const char* text, const char* caption, UINT flags);

/// The window's own menu, made at the first call from the standard commands: restore, move, size,
/// minimise, maximise, a separator, close. Own process only.
class SystemMenu;
SystemMenu* GetSystemMenu(HWND window);
BOOL AppendMenuA(SystemMenu* menu, UINT flags, WPARAM command, const char* text);
/// Greys or enables by command. Returns the state before, -1 without such an item.
int EnableMenuItem(SystemMenu* menu, WPARAM command, UINT flags);

}  // namespace juntora
