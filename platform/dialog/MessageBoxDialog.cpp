#include "platform/dialog/MessageBoxDialog.h"

#include <algorithm>
#include <deque>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/DialogState.h"
#include "platform/dialog/TextSize.h"
#include "platform/dialog/UnseenBox.h"
#include "platform/dialog/dialog.h"

namespace juntora::dialog {
namespace {

struct BoxKind {
    UINT kind;
    BoxButton buttons[3];
    int escape;  ///< What escape and the close box answer; 0 where they do nothing.
};

constexpr UINT KIND_BITS = 0xF;
constexpr UINT ICON_BITS = 0xF0;
constexpr UINT DEFAULT_BITS = 0xF00;

constexpr BoxButton BUTTON_OK{IDOK, "OK", "OK"};
constexpr BoxButton BUTTON_CANCEL{IDCANCEL, "Cancel", "Cancel"};
constexpr BoxButton BUTTON_ABORT{IDABORT, "Abort", "&Abort"};
constexpr BoxButton BUTTON_RETRY{IDRETRY, "Retry", "&Retry"};
constexpr BoxButton BUTTON_IGNORE{IDIGNORE, "Ignore", "&Ignore"};
constexpr BoxButton BUTTON_YES{IDYES, "Yes", "&Yes"};
constexpr BoxButton BUTTON_NO{IDNO, "No", "&No"};

constexpr BoxKind KINDS[] = {
    {MB_OK, {BUTTON_OK, {}, {}}, IDOK},
    {MB_OKCANCEL, {BUTTON_OK, BUTTON_CANCEL, {}}, IDCANCEL},
    {MB_ABORTRETRYIGNORE, {BUTTON_ABORT, BUTTON_RETRY, BUTTON_IGNORE}, 0},
    {MB_YESNOCANCEL, {BUTTON_YES, BUTTON_NO, BUTTON_CANCEL}, IDCANCEL},
    {MB_YESNO, {BUTTON_YES, BUTTON_NO, {}}, 0},
    {MB_RETRYCANCEL, {BUTTON_RETRY, BUTTON_CANCEL, {}}, IDCANCEL},
};

const BoxKind& kindOf(UINT flags) {
    for (const BoxKind& kind : KINDS) {
        if (kind.kind == (flags & KIND_BITS)) {
            return kind;
        }
    }
    return KINDS[0];
}

std::span<const BoxButton> buttonsOf(const BoxKind& kind) {
    const auto end = std::ranges::find(kind.buttons, 0, &BoxButton::id);
    return {std::begin(kind.buttons), end};
}

/// The platform's own pictures, by resource number.
int iconOf(UINT flags) {
    switch (flags & ICON_BITS) {
        case MB_ICONSTOP:
            return IDI_STOP;
        case MB_ICONQUESTION:
            return IDI_QUESTION;
        case MB_ICONWARNING:
            return IDI_WARNING;
        case MB_ICONINFORMATION:
            return IDI_INFORMATION;
        default:
            return 0;
    }
}

// In dialog units.
constexpr int MARGIN = 7;
constexpr int ICON_SIZE = 20;
constexpr int LINE_HEIGHT = 8;
constexpr int BUTTON_WIDTH = 50;
constexpr int BUTTON_HEIGHT = 14;
constexpr int BUTTON_GAP = 4;
constexpr int WIDEST_TEXT = 260;

int unitsAcross(int pixels) { return (4 * pixels + FONT_WIDTH - 1) / FONT_WIDTH; }

/// The template of a box, and the texts that it points into.
struct BoxLayout {
    std::deque<std::string> texts;
    std::vector<DialogControl> controls;
    int width = 0;
    int height = 0;
};

void addLines(BoxLayout& box, const std::vector<std::string>& lines, int left, int top, int width) {
    for (TextPiece& piece : PiecesOfLines(lines)) {
        box.texts.push_back(std::move(piece.text));
        box.controls.push_back(
            {-1, "Static", box.texts.back().c_str(), WS_VISIBLE | SS_LEFT | SS_NOPREFIX, left,
             top + piece.firstLine * LINE_HEIGHT, width, piece.lineCount * LINE_HEIGHT});
    }
}

void addText(BoxLayout& box, const char* text, int icon) {
    const int across = WIDEST_TEXT * FONT_WIDTH / 4;
    const auto lines = BreakLines(ShortenForBox(text, across), across);
    int widest = 0;
    for (const std::string& line : lines) {
        widest = std::max(widest, unitsAcross(TextWidth(line)));
    }
    const int height = LINE_HEIGHT * static_cast<int>(lines.size());
    const int left = icon != 0 ? 2 * MARGIN + ICON_SIZE : MARGIN;
    const int room = icon != 0 ? std::max(height, ICON_SIZE) : height;
    if (icon != 0) {
        box.controls.push_back({-1, "Static", "", WS_VISIBLE | SS_ICON, MARGIN,
                                MARGIN + (room - ICON_SIZE) / 2, ICON_SIZE, ICON_SIZE, icon});
    }
    addLines(box, lines, left, MARGIN + (room - height) / 2, widest);
    box.width = left + widest + MARGIN;
    box.height = MARGIN + room + MARGIN;
}

void addButtons(BoxLayout& box, UINT flags) {
    const auto buttons = buttonsOf(kindOf(flags));
    const int count = static_cast<int>(buttons.size());
    const int row = count * BUTTON_WIDTH + (count - 1) * BUTTON_GAP;
    box.width = std::max(box.width, row + 2 * MARGIN);
    int left = (box.width - row) / 2;
    for (const BoxButton& button : buttons) {
        const bool isDefault = button.id == DefaultButton(flags).id;
        box.controls.push_back(
            {button.id, "Button", button.label,
             WS_VISIBLE | WS_TABSTOP | (isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), left,
             box.height, BUTTON_WIDTH, BUTTON_HEIGHT});
        left += BUTTON_WIDTH + BUTTON_GAP;
    }
    box.height += BUTTON_HEIGHT + MARGIN;
}

/// What the running box knows of itself.
struct RunningBox {
    const BoxKind& kind;
    int defaultButton;
    ScreenWatch watch{};
};

bool isButtonOf(const BoxKind& kind, int id) {
    const auto buttons = buttonsOf(kind);
    return std::ranges::find(buttons, id, &BoxButton::id) != buttons.end();
}

/// The loop may have been ended from outside, with a cancel that the box does not have.
int resultOf(const BoxKind& kind, int ended) {
    if (ended == NOT_SHOWN || isButtonOf(kind, ended)) {
        return ended;
    }
    return ended == IDCANCEL && kind.escape != 0 ? kind.escape : NOT_SHOWN;
}

void answer(HWND dialog, const RunningBox& box, int id) {
    const bool isButton = isButtonOf(box.kind, id);
    if (isButton || (id == IDCANCEL && box.kind.escape != 0)) {
        EndDialog(dialog, isButton ? id : box.kind.escape);
    }
}

BOOL handleBox(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowUserData(dialog, lParam);
        const auto state = FindDialog(dialog);
        auto* starting = reinterpret_cast<RunningBox*>(lParam);
        state->focus = state->control(starting->defaultButton);
        starting->watch.start(dialog);
        return 1;
    }
    auto* box = reinterpret_cast<RunningBox*>(GetWindowUserData(dialog));
    if (box == nullptr) {
        return 0;
    }
    if (message == WM_TIMER && wParam == ScreenWatch::TIMER) {
        if (box->watch.isUnseen()) {
            EndDialog(dialog, NOT_SHOWN);
        }
        return 1;
    }
    if (message == WM_COMMAND) {
        answer(dialog, *box, static_cast<WORD>(wParam));
        return 1;
    }
    return 0;
}

}  // namespace

const BoxButton& DefaultButton(UINT flags) {
    const auto buttons = buttonsOf(kindOf(flags));
    const UINT number = (flags & DEFAULT_BITS) / MB_DEFBUTTON2;
    return number < buttons.size() ? buttons[number] : buttons[0];
}

int ShowMessageBox(HWND owner, const char* text, const char* caption, UINT flags) {
    BoxLayout layout;
    addText(layout, text, iconOf(flags));
    addButtons(layout, flags);
    RunningBox box{kindOf(flags), DefaultButton(flags).id};
    // No close box where it would answer nothing.
    const DWORD menu = box.kind.escape != 0 ? WS_SYSMENU : 0;
    const DialogTemplate source{0,
                                caption,
                                WS_POPUP | WS_CAPTION | menu | DS_MODALFRAME | DS_CENTER,
                                0,
                                layout.width,
                                layout.height,
                                "MS Sans Serif",
                                8,
                                layout.controls};
    return resultOf(box.kind,
                    RunModalDialog(source, owner, handleBox, reinterpret_cast<LPARAM>(&box)));
}

}  // namespace juntora::dialog
