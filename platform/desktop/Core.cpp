#include "platform/desktop/Core.h"

#include <sched.h>

namespace juntora::desktop {

std::uint32_t currentCore() {
    const int core = sched_getcpu();
    return core < 0 ? 0 : static_cast<std::uint32_t>(core);
}

void leaveCore(std::uint32_t core) {
    cpu_set_t allowed;
    if (sched_getaffinity(0, sizeof allowed, &allowed) != 0 || CPU_COUNT(&allowed) < 2) {
        return;
    }
    cpu_set_t others = allowed;
    CPU_CLR(core, &others);
    if (CPU_COUNT(&others) > 0 && sched_setaffinity(0, sizeof others, &others) == 0) {
        sched_setaffinity(0, sizeof allowed, &allowed);
    }
}

}  // namespace juntora::desktop
