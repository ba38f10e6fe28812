// A fresh runtime folder with a desktop in it, and nothing of it left at the end.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace juntora::test {

/// A fresh, empty runtime folder and a desktop name, for any number of processes. When the object
/// goes, or the process that made it dies in whatever way, every process that was started with the
/// folder in its environment is killed, and the folder is removed with all that is in it.
class DesktopSandbox {
public:
    DesktopSandbox();
    ~DesktopSandbox();
    DesktopSandbox(const DesktopSandbox&) = delete;
    DesktopSandbox& operator=(const DesktopSandbox&) = delete;

    /// XDG_RUNTIME_DIR.
    const std::string& runtimeFolder() const { return m_runtimeFolder; }
    /// Where the desktop's files come to lie; made by the first process that opens it.
    std::string desktopFolder() const;
    /// TMPDIR: what programs leave there can be counted.
    std::string temporaryFolder() const;

    /// The settings as "NAME=VALUE", for ChildProcess::Options.
    std::vector<std::string> environment() const;
    /// Puts the settings into this process's environment, for itself and those that it starts. Has
    /// an effect on the layer only before this process's first call of it.
    void enter() const;

    /// Kills every other process that was started with the folder in its environment, and waits
    /// for their ends.
    void endProcesses() const;

private:
    std::string m_runtimeFolder;
    std::string m_desktopName;
    pid_t m_maker;
    pid_t m_guardian = -1;
    int m_guardianPipe = -1;
};

}  // namespace juntora::test
