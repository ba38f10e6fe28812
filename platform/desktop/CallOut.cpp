#include "platform/desktop/CallOut.h"

#include <cinttypes>
#include <cstdio>
#include <exception>

#include "platform/kernel/errorOutput.h"

namespace juntora::desktop {

void reportException(const char* what, std::uint64_t number) noexcept {
    char text[512];
    try {
        throw;
    } catch (const std::exception& error) {
        std::snprintf(text, sizeof text, "juntora: %s %" PRIu64 " failed: %.400s.\n", what, number,
                      error.what());
    } catch (...) {
        std::snprintf(text, sizeof text, "juntora: %s %" PRIu64 " failed.\n", what, number);
    }
    kernel::WriteToErrors(text);
}

}  // namespace juntora::desktop
