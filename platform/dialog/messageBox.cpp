// Message boxes on a desktop that no screen shows: the text goes to standard error, where whoever
// started the program may see it, and the default button is the answer. Waiting would be waiting
// for ever, and a hub or a tool that waits serves nobody.
#include <string>
#include <string_view>

#include "platform/dialog/dialog.h"
#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"

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

/// The text as it is printed, with `indent` before each of its lines. Part of it may come from
/// another process.
std::string indented(std::string_view text, std::string_view indent) {
    std::string result;
    for (std::size_t end = 0; end != text.npos;) {
        end = text.find('\n');
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        result.append(result.empty() ? "" : "\n").append(indent).append(PrintableText(line));
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
    }
    return result;
}

}  // namespace

int MessageBoxA(HWND, const char* text, const char* caption, UINT flags) {
    const Button& answer = defaultButton(flags);
    try {
        const std::string block = "[" + PrintableText(caption ? caption : "Error") + "]\n" +
                                  indented(text ? text : "", "    ") + "\n    (answered \"" +
                                  answer.name + "\": no screen shows this desktop)\n";
        kernel::WriteToErrors(block);
    } catch (...) {
        kernel::WriteToErrors("A message could not be shown: out of memory.\n");
    }
    return answer.id;
}

}  // namespace juntora
