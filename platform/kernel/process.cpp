#include "platform/kernel/process.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

#include "platform/desktop/Timers.h"
#include "platform/files/HostPath.h"
#include "platform/kernel/Children.h"
#include "platform/kernel/Handles.h"
#include "platform/kernel/ProgramSearch.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace kernel {
namespace {

/// How long a wait for a child's idleness goes on before it looks whether the child has ended: a
/// child that does not use this layer tells of its end alone.
constexpr DWORD LOOK_FOR_END_MILLISECONDS = 5;
constexpr int FIRST_UNINHERITED = 3;

/// Attributes and actions of a spawn, freed at the end of the scope.
class SpawnSettings {
public:
    SpawnSettings(const char* directory, bool withStreams) {
        posix_spawn_file_actions_init(&actions);
        posix_spawnattr_init(&attributes);
        for (int stream = 0; !withStreams && stream < FIRST_UNINHERITED; ++stream) {
            posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
        }
        posix_spawn_file_actions_addclosefrom_np(&actions, FIRST_UNINHERITED);
        if (directory != nullptr) {
            posix_spawn_file_actions_addchdir_np(&actions, files::locate(directory).path.c_str());
        }
        sigset_t signals;
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&attributes, &signals);
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&attributes, &signals);
        // A session of its own: what is typed at the starter's terminal is not meant for the child.
        posix_spawnattr_setflags(
            &attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// This process's environment with the place of the child's start record.
std::vector<std::string> environmentFor(const StartPlace& place) {
    const std::string prefix = std::string(START_VARIABLE) + "=";
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (std::string_view(*variable).substr(0, prefix.size()) != prefix) {
            variables.emplace_back(*variable);
        }
    }
    if (place.token != 0) {
        variables.push_back(prefix + startText(place));
    }
    return variables;
}

/// The new process's number, or minus the error.
int spawn(const ProgramStart& start, const char* directory, bool withStreams,
          const StartPlace& place) {
    std::vector<std::string> words = start.words;
    words[0] = start.file;
    std::vector<std::string> variables = environmentFor(place);
    const SpawnSettings settings(directory, withStreams);
    pid_t child = 0;
    const int error =
        posix_spawn(&child, start.file.c_str(), &settings.actions, &settings.attributes,
                    pointersTo(words).data(), pointersTo(variables).data());
    return error == 0 ? child : -error;
}

bool hasEnded(const Handle& child) {
    return WaitForSingleObject(valueOf(&child), 0) != WAIT_TIMEOUT;
}

}  // namespace
}  // namespace kernel

BOOL CreateProcessA(const char* commandLine, const char* directory, const STARTUPINFOA* startup,
                    PROCESS_INFORMATION* information) {
    using namespace kernel;
    collectSomeChildren();
    *information = {};
    const ProgramStart start = findProgram(commandLine);
    if (start.file.empty()) {
        SetLastError(start.error);
        return 0;
    }
    Handle* entry = reserveHandle();
    if (entry == nullptr) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    const DWORD flags = startup != nullptr ? startup->dwFlags : 0;
    const bool hasShow = (flags & STARTF_USESHOWWINDOW) != 0;
    StartPlace place;
    if (desktop::Attachment* desktop = desktop::Attachment::get()) {
        place = offerStart(*desktop, start.line, hasShow ? startup->wShowWindow : NO_SHOW_STATE);
    }
    const int child = spawn(start, directory, (flags & STARTF_WITHOUTSTREAMS) == 0, place);
    if (child < 0) {
        endStart(place);
        entry->kind = HandleKind::CLOSED;
        SetLastError(errorOf(-child));
        return 0;
    }
    entry->descriptor = static_cast<int>(syscall(SYS_pidfd_open, child, 0));
    entry->hold = place.index;
    entry->startToken = place.token;
    entry->processId = child;
    entry->kind.store(HandleKind::PROCESS, std::memory_order_release);
    keepChild(entry->descriptor, place);
    *information = {valueOf(entry), static_cast<DWORD>(child)};
    return 1;
}

BOOL TerminateProcess(HANDLE process) {
    const kernel::Handle* entry = kernel::handleOf(process, kernel::HandleKind::PROCESS);
    if (entry == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    if (syscall(SYS_pidfd_send_signal, entry->descriptor, SIGKILL, nullptr, 0) != 0) {
        SetLastError(kernel::errorOf(errno));
        return 0;
    }
    return 1;
}

BOOL GetExitCodeProcess(HANDLE process, DWORD* exitCode) {
    constexpr int SIGNAL_BASE = 128;
    const kernel::Handle* entry = kernel::handleOf(process, kernel::HandleKind::PROCESS);
    siginfo_t ended{};
    if (entry == nullptr || waitid(P_PIDFD, static_cast<id_t>(entry->descriptor), &ended,
                                   WEXITED | WNOHANG | WNOWAIT) != 0) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    const int code = ended.si_code == CLD_EXITED ? ended.si_status : SIGNAL_BASE + ended.si_status;
    *exitCode = ended.si_pid == 0 ? STILL_ACTIVE : static_cast<DWORD>(code);
    return 1;
}

DWORD WaitForInputIdle(HANDLE process, DWORD milliseconds) {
    kernel::Handle* entry = kernel::handleOf(process, kernel::HandleKind::PROCESS);
    if (entry == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return WAIT_FAILED;
    }
    const kernel::StartPlace place{entry->hold, entry->startToken};
    const std::int64_t end = desktop::nowMilliseconds() + milliseconds;
    while (!kernel::isInputIdle(place)) {
        if (kernel::hasEnded(*entry)) {
            return 0;
        }
        const std::int64_t left = milliseconds == INFINITE ? kernel::LOOK_FOR_END_MILLISECONDS
                                                           : end - desktop::nowMilliseconds();
        if (left <= 0) {
            return WAIT_TIMEOUT;
        }
        const auto slice =
            static_cast<DWORD>(std::min<std::int64_t>(left, kernel::LOOK_FOR_END_MILLISECONDS));
        if (place.token != 0) {
            kernel::awaitInputIdle(place, slice);
        } else {
            WaitForSingleObject(process, slice);
        }
    }
    return 0;
}

}  // namespace juntora
