// The desktop's lock file: byte 0 is held by whoever opens or leaves the desktop, byte 1 + i by
// process i as long as it lives. The kernel gives a dead process's bytes back.
#pragma once

#include <cstdint>

#include "platform/desktop/Folder.h"

namespace juntora::desktop {

class LockFile {
public:
    LockFile() = default;
    LockFile(const LockFile&) = delete;
    LockFile& operator=(const LockFile&) = delete;
    ~LockFile() { close(); }

    /// Opens the file, making it if need be, and takes byte 0; waits up to 10 s for whoever has it.
    bool openAndEnter(const Folder& folder, Problem* problem);
    /// Takes byte 0 again, for leaving.
    bool enter();
    void exit();

    bool takeProcess(std::uint32_t process);
    void releaseProcess(std::uint32_t process);
    /// Whether some process holds that byte. A system call.
    bool processLives(std::uint32_t process) const;
    /// Whether any process does.
    bool anyProcessLives() const;

    /// In a forked child, which must not keep its parent's bytes held.
    void close();

private:
    int m_descriptor = -1;
};

}  // namespace juntora::desktop
