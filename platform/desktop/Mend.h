// Making the segment whole after a death under its lock.
#pragma once

#include "platform/desktop/Layout.h"

namespace juntora::desktop {

/// Throws away what was not finished and rebuilds everything that can be derived. Idempotent, and
/// may itself be cut off anywhere. The caller holds the lock.
void mend(Segment& segment);

}  // namespace juntora::desktop
