#include "platform/kernel/debugOutput.h"

#include "platform/kernel/errorOutput.h"

namespace juntora {

void OutputDebugStringA(const char* text) {
    if (text != nullptr) {
        kernel::WriteToErrors(text);
    }
}

}  // namespace juntora
