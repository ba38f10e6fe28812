#include "registration/boundedRun.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "platform/kernel/errorText.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char PATIENCE_VARIABLE[] = "JUNTORA_REGISTRAR_SECONDS";
constexpr DWORD PATIENCE_SECONDS = 30;
constexpr DWORD LONGEST_PATIENCE_SECONDS = 3600;
/// A killed one is gone at once, unless the kernel holds it.
constexpr DWORD KILLED_MILLISECONDS = 5000;

/// Nothing where the environment says nothing, or nothing that can be followed.
std::optional<DWORD> wantedPatience() {
    const char* value = GetEnvironment(PATIENCE_VARIABLE);
    const std::string_view text = value == nullptr ? "" : value;
    DWORD seconds = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, seconds);
    const bool isGood = error == std::errc() && behind == end && seconds >= 1 &&
                        seconds <= LONGEST_PATIENCE_SECONDS;
    return isGood ? std::optional(seconds) : std::nullopt;
}

std::string textOf(DWORD error) {
    char* text = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, error, 0, &text);
    std::string copy = text == nullptr ? "" : text;
    LocalFree(text);
    return copy;
}

}  // namespace

std::string patienceProblem() {
    if (GetEnvironment(PATIENCE_VARIABLE) == nullptr || wantedPatience()) {
        return "";
    }
    return std::string(PATIENCE_VARIABLE) + " is no number from 1 to " +
           std::to_string(LONGEST_PATIENCE_SECONDS) + ". Servers have " +
           std::to_string(PATIENCE_SECONDS) + " s.";
}

BoundedRun runBounded(const std::string& commandLine) {
    const STARTUPINFOA startup{STARTF_USESHOWWINDOW, SW_HIDE};
    PROCESS_INFORMATION process{};
    if (CreateProcessA(commandLine.c_str(), nullptr, &startup, &process) == 0) {
        const DWORD error = GetLastError();
        return {.why = "It could not be started. " + textOf(error),
                .isMissing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND};
    }
    BoundedRun run;
    const DWORD seconds = wantedPatience().value_or(PATIENCE_SECONDS);
    if (WaitForSingleObject(process.hProcess, seconds * 1000) != WAIT_OBJECT_0) {
        TerminateProcess(process.hProcess);
        WaitForSingleObject(process.hProcess, KILLED_MILLISECONDS);
        run.why = "It had not ended after " + std::to_string(seconds) +
                  " s and was killed. If it needs longer, say so in " + PATIENCE_VARIABLE + ".";
    } else if (GetExitCodeProcess(process.hProcess, &run.exitCode) == 0) {
        run.why = "How it ended could not be learned.";
    }
    CloseHandle(process.hProcess);
    return run;
}

}  // namespace juntora
