#include "platform/kernel/Children.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <mutex>
#include <vector>

#include "platform/desktop/message.h"

namespace juntora::kernel {
namespace {

struct Child {
    int descriptor;
    StartPlace place;
};

struct Children {
    std::mutex mutex;
    std::vector<Child> all;
};

Children& children() {
    static auto* const list = new Children;  // Processes may be started until the very end.
    return *list;
}

bool collectIfEnded(const Child& child) {
    siginfo_t ended{};
    const auto which = static_cast<id_t>(child.descriptor);
    const bool failed = waitid(P_PIDFD, which, &ended, WEXITED | WNOHANG) != 0;
    if (!failed && ended.si_pid == 0) {
        return false;
    }
    endStart(child.place);
    UnwatchDescriptor(child.descriptor);
    close(child.descriptor);
    return true;
}

}  // namespace

void keepChild(int descriptor, const StartPlace& place) {
    const int own = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
    if (own < 0) {
        return;
    }
    {
        const std::lock_guard guard(children().mutex);
        children().all.push_back({own, place});
    }
    WatchDescriptor(
        own, [](void*) { collectEndedChildren(); }, nullptr);
}

void collectEndedChildren() {
    const std::lock_guard guard(children().mutex);
    std::erase_if(children().all, collectIfEnded);
}

void leaveChild(Handle& entry) {
    close(entry.descriptor);
    entry.descriptor = -1;
}

}  // namespace juntora::kernel
