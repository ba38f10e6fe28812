// Message boxes. On a desktop that no screen shows the text goes to standard error, where whoever
// started the program may see it, and the default button is the answer. Waiting would be waiting
// for ever, and a hub or a tool that waits serves nobody.
#include <new>
#include <string>
#include <string_view>

#include "platform/desktop/view.h"
#include "platform/dialog/MessageBoxDialog.h"
#include "platform/dialog/dialog.h"
#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"

namespace juntora {
namespace {

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

/// Counts the boxes of this thread that stand one inside the other: each loop serves what makes the
/// next one, and all of them lie on one stack.
class NestedBox {
public:
    NestedBox() { ++t_depth; }
    ~NestedBox() { --t_depth; }
    NestedBox(const NestedBox&) = delete;
    NestedBox& operator=(const NestedBox&) = delete;

    static bool isAllowed() { return t_depth <= MOST; }

private:
    static constexpr int MOST = 8;
    static thread_local int t_depth;
};

thread_local int NestedBox::t_depth = 0;

void printBox(const char* text, const char* caption, const char* answer) {
    try {
        const std::string block = "[" + PrintableText(caption ? caption : "Error") + "]\n" +
                                  indented(text ? text : "", "    ") + "\n    (answered \"" +
                                  answer + "\": no screen shows this desktop)\n";
        kernel::WriteToErrors(block);
    } catch (...) {
        kernel::WriteToErrors("A message could not be shown: out of memory.\n");
    }
}

}  // namespace

int MessageBoxA(HWND owner, const char* text, const char* caption, UINT flags) {
    using namespace dialog;
    const BoxButton& fallback = DefaultButton(flags);
    int answer = NOT_SHOWN;
    try {
        const NestedBox nested;
        if (NestedBox::isAllowed() && EnsureScreen()) {
            answer = ShowMessageBox(owner, text ? text : "", caption ? caption : "Error", flags);
        }
    } catch (const std::bad_alloc&) {
        answer = NOT_SHOWN;
    }
    if (answer != NOT_SHOWN) {
        return answer;
    }
    printBox(text, caption, fallback.name);
    return fallback.id;
}

}  // namespace juntora
