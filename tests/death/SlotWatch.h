// The flags of the block of slots, seen past the library.
#pragma once

#include "tests/death/Scenario.h"

namespace juntora::test {

/// Looks at the block, which the calling process has open, and gives back what slots are taken:
/// nobody else does so for one that died with a slot. Returns their number, and notes flags that
/// are neither.
int reclaimSlots(Findings& findings);

}  // namespace juntora::test
