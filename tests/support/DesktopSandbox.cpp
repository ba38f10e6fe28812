#include "tests/support/DesktopSandbox.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "tests/support/ProcessDescriptor.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

/// A folder in memory where there is one, as a runtime folder commonly is.
std::string makeRuntimeFolder() {
    for (const char* base : {"/dev/shm", "/tmp"}) {
        std::string path = std::string(base) + "/juntora-test-XXXXXX";
        if (mkdtemp(path.data()) != nullptr) {
            return path;
        }
    }
    throw std::runtime_error(std::string("no folder for the test: ") + std::strerror(errno));
}

bool wasStartedWith(pid_t process, const std::string& setting) {
    std::ifstream file("/proc/" + std::to_string(process) + "/environ", std::ios::binary);
    const std::string block{std::istreambuf_iterator<char>(file), {}};
    return (std::string(1, '\0') + block).find(std::string(1, '\0') + setting + '\0') !=
           std::string::npos;
}

/// Kills those that were started with `setting`; returns how many there were.
int killStartedWith(const std::string& setting) {
    int killed = 0;
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", ignored)) {
        const std::string name = entry.path().filename().string();
        pid_t process = 0;
        const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
        if (error != std::errc() || *end != '\0' || process == getpid()) {
            continue;
        }
        // Opened before the look at its environment: the number may pass to another process.
        const Descriptor descriptor = openProcess(process);
        if (descriptor >= 0 && wasStartedWith(process, setting)) {
            ++killed;
            signalProcess(descriptor, SIGKILL);
            pollfd ended{descriptor, POLLIN, 0};
            poll(&ended, 1, 5'000);
        }
    }
    return killed;
}

void killAllStartedWith(const std::string& setting) {
    // One that was just being started may come up after its parent has been killed.
    for (int pass = 0; pass < 100 && killStartedWith(setting) > 0; ++pass) {
    }
}

/// Waits for the test's end or word from it, and cleans up.
[[noreturn]] void guard(pid_t maker, int word, const std::string& setting,
                        const std::string& folder) {
    setsid();
    for (const int ignored : {SIGTERM, SIGINT, SIGHUP, SIGPIPE}) {
        signal(ignored, SIG_IGN);
    }
    dup2(word, 0);
    close_range(1, ~0U, 0);
    const Descriptor process = openProcess(maker);
    std::array<pollfd, 2> watched{{{0, POLLIN, 0}, {process, POLLIN, 0}}};
    if (getppid() == maker) {
        while (poll(watched.data(), watched.size(), -1) < 0 && errno == EINTR) {
        }
    }
    killAllStartedWith(setting);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    _exit(0);
}

}  // namespace

DesktopSandbox::DesktopSandbox()
    : m_runtimeFolder(makeRuntimeFolder()), m_desktopName("test"), m_maker(getpid()) {
    std::array<int, 2> ends{};
    if (mkdir(temporaryFolder().c_str(), 0700) != 0 || pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no folder for the test: ") + std::strerror(errno));
    }
    m_guardian = fork();
    if (m_guardian == 0) {
        guard(m_maker, ends[0], "XDG_RUNTIME_DIR=" + m_runtimeFolder, m_runtimeFolder);
    }
    close(ends[0]);
    m_guardianPipe = ends[1];
}

DesktopSandbox::~DesktopSandbox() {
    if (getpid() != m_maker) {
        return;
    }
    [[maybe_unused]] const ssize_t told = write(m_guardianPipe, "e", 1);
    close(m_guardianPipe);
    waitpid(m_guardian, nullptr, 0);
}

std::string DesktopSandbox::desktopFolder() const {
    return m_runtimeFolder + "/juntora/" + m_desktopName;
}

std::string DesktopSandbox::temporaryFolder() const { return m_runtimeFolder + "/temporary"; }

std::vector<std::string> DesktopSandbox::environment() const {
    return {"XDG_RUNTIME_DIR=" + m_runtimeFolder,
            "JUNTORA_DESKTOP=" + m_desktopName,
            "TMPDIR=" + temporaryFolder(),
            "JUNTORA_SCREEN=none",
            "JUNTORA_REGISTRY=" + m_runtimeFolder + "/registry",
            "XDG_DATA_HOME=" + m_runtimeFolder + "/data",
            "DBUS_SESSION_BUS_ADDRESS="};
}

void DesktopSandbox::enter() const {
    for (const std::string& setting : environment()) {
        const std::size_t sign = setting.find('=');
        setenv(setting.substr(0, sign).c_str(), setting.substr(sign + 1).c_str(), 1);
    }
}

void DesktopSandbox::endProcesses() const {
    killAllStartedWith("XDG_RUNTIME_DIR=" + m_runtimeFolder);
}

}  // namespace juntora::test
