// What a program needs that shows the desktop to a person: the windows that are to be seen, word of
// every change to them, and the way by which others find the program that shows them.
//
// No call here sends a message to a window's owner, so none can hang on a program that is stopped.
// Any thread may call them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/types.h"

namespace juntora {

/// A window as it is at one moment.
struct ViewedWindow {
    HWND window;
    HWND parent;  ///< The window that it is in; 0 for a top-level one.
    HWND owner;   ///< The window above which a top-level one stays; 0 for none.
    DWORD style;
    DWORD extendedStyle;
    int id;
    int icon;            ///< Resource number, 0 for none.
    RECT place;          ///< In pixels of the dialog model (dialog.h), relative to the parent.
    DWORD changes;       ///< As GetWindowChangeCount.
    std::int64_t order;  ///< Grows with each time that the window is put in front.
    DWORD thread;        ///< The owner, as GetWindowThreadProcessId numbers it.
    std::string className;
    std::string text;
};

/// Every visible top-level window of every living program, the front-most first, each followed by
/// all that is in it, hidden or not, from the first made to the last. Costs a walk over the
/// desktop's windows. Nothing while the desktop cannot be looked at: a program that is stopped in
/// the middle of a change keeps everybody out for seconds.
std::optional<std::vector<ViewedWindow>> ViewWindows();

/// Counts the changes to what any window of the desktop shows, to the window order and to what is
/// in front.
DWORD ViewChangeCount();

/// Waits until the count is no longer `seen`, at most `milliseconds`; returns it. Changes while
/// nobody waits cost those who make them a few instructions, and the first one behind a wait one
/// system call.
DWORD AwaitViewChange(DWORD seen, DWORD milliseconds);

/// The program that shows the desktop has a hidden window of this class without a title.
inline constexpr char SCREEN_WINDOW_CLASS[] = "JuntoraScreen";

/// That window; 0 while nothing shows the desktop.
HWND FindScreen();

/// Sees to it that the desktop is shown, where that can be: starts the program for it unless one
/// runs, one that has not been seen yet was started within the last ten seconds, it is forbidden
/// (JUNTORA_SCREEN=none), or there is no display to show it on. Returns whether one runs or can be
/// counted on to come up: not after one that was started in vain. Does not wait.
bool EnsureScreen();

// Messages of the layer's own, with a text each.

/// To a dialog: its own menu (GetSystemMenu), an item a line: flags, command and text between tabs.
/// `lParam` is a buffer of MESSAGE_TEXT_BYTES; the result is the length.
inline constexpr UINT VIEW_GET_MENU = 0x02F0;
/// To the screen: saves a picture of the window `wParam`, of the one in front for 0, as a PNG in
/// the file that `lParam` names. Result: a PictureResult.
inline constexpr UINT VIEW_SAVE_PICTURE = 0x02F1;
/// To the screen, with the same `wParam`: 0 while the window's program is being asked for something
/// that is to be seen in it (the lines of a list, the ticks of boxes), else 1, as for a window that
/// is not shown.
inline constexpr UINT VIEW_IS_COMPLETE = 0x02F2;

enum PictureResult : LRESULT {
    PICTURE_NO_ANSWER,
    PICTURE_SAVED,
    PICTURE_NO_WINDOW,
    PICTURE_NO_FILE
};

}  // namespace juntora
