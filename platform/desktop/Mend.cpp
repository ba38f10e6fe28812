#include "platform/desktop/Mend.h"

#include "platform/desktop/WindowIndex.h"
#include "platform/kernel/NamedObjects.h"

namespace juntora::desktop {

void mend(Segment& segment) {
    rebuildWindowIndex(segment);
    kernel::rebuildObjects(segment);
}

}  // namespace juntora::desktop
