#include "platform/kernel/debugOutput.h"

#include <cstdio>

#include "platform/kernel/NoPipeSignal.h"
#include "platform/kernel/errorOutput.h"

namespace juntora {

void OutputDebugStringA(const char* text) {
    if (text != nullptr) {
        kernel::WriteToErrors(text);
    }
}

void PrintToOutput(std::string_view text) {
    const kernel::NoPipeSignal noSignal;
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

}  // namespace juntora
