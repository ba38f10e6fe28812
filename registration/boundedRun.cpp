#include "registration/boundedRun.h"

#include <charconv>
#include <string_view>

#include "platform/kernel/errorText.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char PATIENCE_VARIABLE[] = "JUNTORA_REGISTRAR_SECONDS";
constexpr DWORD PATIENCE_SECONDS = 30;
constexpr DWORD LONGEST_PATIENCE_SECONDS = 3600;

DWORD patienceSeconds() {
    const char* value = GetEnvironment(PATIENCE_VARIABLE);
    const std::string_view text = value == nullptr ? "" : value;
    DWORD seconds = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, seconds);
    const bool isGood = error == std::errc() && behind == end && seconds >= 1 &&
                        seconds <= LONGEST_PATIENCE_SECONDS;
    return isGood ? seconds : PATIENCE_SECONDS;
}

std::string lastErrorText() {
    char* text = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, GetLastError(), 0,
                   &text);
    std::string copy = text == nullptr ? "" : text;
    LocalFree(text);
    return copy;
}

}  // namespace

std::string runBounded(const std::string& commandLine) {
    const STARTUPINFOA startup{STARTF_USESHOWWINDOW, SW_HIDE};
    PROCESS_INFORMATION process{};
    if (CreateProcessA(commandLine.c_str(), nullptr, &startup, &process) == 0) {
        return "It could not be started. " + lastErrorText();
    }
    const DWORD seconds = patienceSeconds();
    const bool hasEnded = WaitForSingleObject(process.hProcess, seconds * 1000) == WAIT_OBJECT_0;
    if (!hasEnded) {
        TerminateProcess(process.hProcess);
    }
    CloseHandle(process.hProcess);
    return hasEnded
               ? ""
               : "It had not ended after " + std::to_string(seconds) +
                     " s and was killed. If it needs longer, say so in " + PATIENCE_VARIABLE + ".";
}

}  // namespace juntora
