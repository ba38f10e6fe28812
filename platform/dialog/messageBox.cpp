// Message boxes on a desktop that no screen shows: the text goes to standard error, where whoever
// started the program may see it, and the default button is the answer. Waiting would be waiting
// for ever, and a hub or a tool that waits serves nobody.
#include <string>
#include <string_view>

#include "platform/dialog/dialog.h"
#include "platform/kernel/errorOutput.h"

namespace juntora {
namespace {

struct Button {
    int id;
    const char* name;
};

struct Buttons {
    UINT kind;
    Button buttons[3];
};

constexpr UINT KIND_BITS = 0xF;
constexpr UINT DEFAULT_BITS = 0xF00;

constexpr Buttons BUTTONS[] = {
    {MB_OK, {{IDOK, "OK"}, {}, {}}},
    {MB_OKCANCEL, {{IDOK, "OK"}, {IDCANCEL, "Cancel"}, {}}},
    {MB_ABORTRETRYIGNORE, {{IDABORT, "Abort"}, {IDRETRY, "Retry"}, {IDIGNORE, "Ignore"}}},
    {MB_YESNOCANCEL, {{IDYES, "Yes"}, {IDNO, "No"}, {IDCANCEL, "Cancel"}}},
    {MB_YESNO, {{IDYES, "Yes"}, {IDNO, "No"}, {}}},
    {MB_RETRYCANCEL, {{IDRETRY, "Retry"}, {IDCANCEL, "Cancel"}, {}}},
};

/// The first button where the flags ask for one that the box does not have.
const Button& defaultButton(UINT flags) {
    const Buttons* box = &BUTTONS[0];
    for (const Buttons& candidate : BUTTONS) {
        if (candidate.kind == (flags & KIND_BITS)) {
            box = &candidate;
        }
    }
    const UINT number = (flags & DEFAULT_BITS) / MB_DEFBUTTON2;
    return number < 3 && box->buttons[number].name ? box->buttons[number] : box->buttons[0];
}

/// Part of the text may come from another process: nothing in it may steer the terminal. Each of
/// its lines starts with `indent`.
std::string printable(std::string_view text, std::string_view indent) {
    std::string result;
    for (const char character : text) {
        if (character == '\n') {
            result.append("\n").append(indent);
        } else if (character != '\r') {
            const auto byte = static_cast<unsigned char>(character);
            result += byte < ' ' || byte == 127 ? ' ' : character;
        }
    }
    return result;
}

}  // namespace

int MessageBoxA(HWND, const char* text, const char* caption, UINT flags) {
    const Button& answer = defaultButton(flags);
    try {
        const std::string block = "[" + printable(caption ? caption : "Error", "") + "]\n    " +
                                  printable(text ? text : "", "    ") + "\n    (answered \"" +
                                  answer.name + "\": no screen shows this desktop)\n";
        kernel::WriteToErrors(block);
    } catch (...) {
        kernel::WriteToErrors("A message could not be shown: out of memory.\n");
    }
    return answer.id;
}

}  // namespace juntora
