// Starting the program that shows the desktop.
#include <atomic>
#include <cstdlib>
#include <string_view>

#include "platform/desktop/Timers.h"
#include "platform/desktop/view.h"
#include "platform/kernel/process.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char SCREEN_PROGRAM[] = "juntora-screen --quiet";

/// A start that fails is not tried again at each window that is shown.
constexpr std::int64_t RETRY_MILLISECONDS = 5000;

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

bool isForbidden() {
    const char* value = std::getenv("JUNTORA_SCREEN");
    return value != nullptr && std::string_view(value) == "none";
}

/// Whether this process may try now, and so will not for a while.
bool takeTurn() {
    static std::atomic<std::int64_t> next{0};
    const std::int64_t now = desktop::nowMilliseconds();
    std::int64_t due = next.load();
    return due <= now && next.compare_exchange_strong(due, now + RETRY_MILLISECONDS);
}

}  // namespace

bool EnsureScreen() {
    if (FindScreen() != 0) {
        return true;
    }
    if (isForbidden() || (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))) {
        return false;
    }
    static std::atomic<bool> mayCome{false};
    if (takeTurn()) {
        PROCESS_INFORMATION process{};
        mayCome = CreateProcessA(SCREEN_PROGRAM, nullptr, nullptr, &process) != 0;
        CloseHandle(process.hProcess);
    }
    return mayCome;
}

}  // namespace juntora
