#include "setup/debugPrint.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "common/CaseBlind.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/debugOutput.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr char DESTINATION_VARIABLE[] = "DEBUGPRINT";
constexpr char DEFAULT_FILE[] = "z80.dbg";
constexpr std::size_t WINDOW_TEXT_SIZE = 1024;

/// Empty for a format that can't be carried out.
std::string formatted(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

/// False if the file can't be opened. One that takes no more is no reason to write elsewhere.
bool appendTo(const char* path, const std::string& text) {
    return AppendToFile(path, text.data(), text.size()) != AppendResult::NOT_OPENED;
}

void printTo(const char* destination, const std::string& text) {
    if (destination && equalCaseBlind(destination, "stdout")) {
        PrintToOutput(text);
    } else if (destination && equalCaseBlind(destination, "debugwindow")) {
        OutputDebugStringA(text.substr(0, WINDOW_TEXT_SIZE - 1).c_str());
    } else if (!destination || !appendTo(destination, text)) {
        appendTo(DEFAULT_FILE, text);
    }
}

}  // namespace

void DebugPrint(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::string text = formatted(format, arguments);
    va_end(arguments);
    printTo(GetEnvironment(DESTINATION_VARIABLE), text);
}

}  // namespace juntora
