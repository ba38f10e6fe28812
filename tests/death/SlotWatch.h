// The flags of the block of slots, seen past the library.
#pragma once

#include "tests/death/Scenario.h"

namespace juntora::test {

struct TakenSlots {
    int count = 0;
    int lowestFree = 0;
};

/// Looks at the block, which the calling process has open, and gives back what slots are taken:
/// nobody else does so for one that died with a slot. Notes flags that are neither.
TakenSlots countAndReclaimSlots(Findings& findings);

}  // namespace juntora::test
