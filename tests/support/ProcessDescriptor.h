// Descriptors of processes. The C library's own header of them cannot be linked from C++ in its
// version 2.36.
#pragma once

#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include "tests/support/Descriptor.h"

namespace juntora::test {

/// A descriptor that polls readable once the process has ended; -1 with errno.
inline Descriptor openProcess(pid_t process) {
    return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, process, 0)));
}

inline bool signalProcess(int descriptor, int signal) {
    return syscall(SYS_pidfd_send_signal, descriptor, signal, nullptr, 0) == 0;
}

}  // namespace juntora::test
