#include "platform/dialog/UnseenBox.h"

#include <string>
#include <string_view>

#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/kernel/errorOutput.h"
#include "platform/kernel/printable.h"

namespace juntora::dialog {
namespace {

constexpr DWORD TICK_MILLISECONDS = 1000;
constexpr int UNSEEN_TICKS = 10;

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

void PrintUnseenBox(const char* text, const char* caption, const char* answer) {
    try {
        const std::string block = "[" + PrintableText(caption ? caption : "Error") + "]\n" +
                                  indented(text ? text : "", "    ") + "\n    (answered \"" +
                                  PrintableText(answer) + "\": no screen shows this desktop)\n";
        kernel::WriteToErrors(block);
    } catch (...) {
        kernel::WriteToErrors("A message could not be shown: out of memory.\n");
    }
}

void ScreenWatch::start(HWND box) { SetTimer(box, TIMER, TICK_MILLISECONDS, nullptr); }

bool ScreenWatch::isUnseen() {
    EnsureScreen();
    m_unseenTicks = FindScreen() != 0 ? 0 : m_unseenTicks + 1;
    return m_unseenTicks >= UNSEEN_TICKS;
}

}  // namespace juntora::dialog
