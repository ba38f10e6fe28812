// The system's error numbers as the platform's.
#pragma once

#include "platform/types.h"

namespace juntora::kernel {

/// The platform's number for an errno; ERROR_GEN_FAILURE for one that it has no word for.
DWORD errorOf(int number);

}  // namespace juntora::kernel
