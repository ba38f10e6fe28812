#include "platform/kernel/Children.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <map>
#include <mutex>

#include "platform/desktop/message.h"

namespace juntora::kernel {
namespace {

/// How many earlier children each start looks at: more than one, so that those that nobody else
/// collects do not grow in number, and few, so that a start costs the same however many run.
constexpr int LOOKED_AT_EACH_START = 2;

struct Children {
    std::mutex mutex;
    std::map<int, StartPlace> byDescriptor;
    int lastLookedAt = -1;
};

Children& children() {
    static auto* const list = new Children;  // Processes may be started until the very end.
    return *list;
}

/// Collects a child if it has ended, and forgets it then. The list must be locked.
void collectIfEnded(std::map<int, StartPlace>::iterator child) {
    const int descriptor = child->first;
    siginfo_t ended{};
    const bool failed =
        waitid(P_PIDFD, static_cast<id_t>(descriptor), &ended, WEXITED | WNOHANG) != 0;
    if (!failed && ended.si_pid == 0) {
        return;
    }
    endStart(child->second);
    UnwatchDescriptor(descriptor);
    close(descriptor);
    children().byDescriptor.erase(child);
}

void collect(void* descriptor) {
    const std::lock_guard guard(children().mutex);
    const auto child =
        children().byDescriptor.find(static_cast<int>(reinterpret_cast<std::intptr_t>(descriptor)));
    if (child != children().byDescriptor.end()) {
        collectIfEnded(child);
    }
}

}  // namespace

void keepChild(int descriptor, const StartPlace& place) {
    const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (own < 0) {
        return;
    }
    {
        const std::lock_guard guard(children().mutex);
        children().byDescriptor[own] = place;
    }
    WatchDescriptor(own, &collect, reinterpret_cast<void*>(static_cast<std::intptr_t>(own)));
}

void collectSomeChildren() {
    Children& all = children();
    const std::lock_guard guard(all.mutex);
    for (int i = 0; i < LOOKED_AT_EACH_START && !all.byDescriptor.empty(); ++i) {
        auto child = all.byDescriptor.upper_bound(all.lastLookedAt);
        child = child == all.byDescriptor.end() ? all.byDescriptor.begin() : child;
        all.lastLookedAt = child->first;
        collectIfEnded(child);
    }
}

void leaveChild(Handle& entry) {
    close(entry.descriptor);
    entry.descriptor = -1;
}

}  // namespace juntora::kernel
