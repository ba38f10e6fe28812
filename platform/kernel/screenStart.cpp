// Starting the program that shows the desktop.
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <string_view>

#include "platform/desktop/Timers.h"
#include "platform/desktop/view.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char SCREEN_PROGRAM[] = "juntora-screen --quiet";

/// A start that has brought nothing is not tried again at each window that is shown.
constexpr std::int64_t RETRY_MILLISECONDS = 10'000;
constexpr std::int64_t NEVER = -RETRY_MILLISECONDS;

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

bool isForbidden() {
    const char* value = std::getenv("JUNTORA_SCREEN");
    return value != nullptr && std::string_view(value) == "none";
}

bool start() {
    PROCESS_INFORMATION process{};
    const bool isStarted = CreateProcessA(SCREEN_PROGRAM, nullptr, nullptr, &process) != 0;
    CloseHandle(process.hProcess);
    return isStarted;
}

}  // namespace

bool EnsureScreen() {
    static std::mutex mutex;
    static std::int64_t lastStart = NEVER;
    static bool isUnseen = false;  // One was started, and none has been seen since.
    static bool mayCome = false;
    const std::lock_guard guard(mutex);
    if (FindScreen() != 0) {
        isUnseen = false;
        return true;
    }
    if (isForbidden() || (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))) {
        return false;
    }
    const std::int64_t now = desktop::nowMilliseconds();
    if (!isUnseen || now - lastStart >= RETRY_MILLISECONDS) {
        lastStart = now;
        // One that follows another that never came may come, but nobody is told to count on it.
        mayCome = start() && !isUnseen;
        isUnseen = true;
    }
    return mayCome;
}

}  // namespace juntora
