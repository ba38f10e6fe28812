#include "platform/automation/PrivateBus.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

#include "platform/desktop/Attachment.h"
#include "platform/desktop/message.h"
#include "platform/kernel/hostEnvironment.h"
#include "platform/kernel/sync.h"

extern char** environ;

namespace juntora::automation {
namespace {

constexpr char DAEMON[] = "dbus-daemon";
constexpr char START_MUTEX[] = "JuntoraBusStart";
constexpr DWORD START_MILLISECONDS = 5000;
constexpr DWORD STEP_MILLISECONDS = 5;
constexpr int READY_DESCRIPTOR = 3;

/// The daemon knows nothing of the desktop. Every process that is on the bus holds a shared lock on
/// a file of the desktop's; a shell beside the daemon waits for the exclusive one, which it gets
/// when the last of them has gone, and ends the daemon while it has it. Who comes meanwhile waits,
/// and then starts another. The shell that has started both stays until the daemon has ended, so
/// that its number is nobody else's while it may be used, and nobody waits for a daemon that has
/// died. Descriptor 3 is the starter's: the daemon writes a line there when it listens, and it ends
/// when the daemon does.
constexpr char KEEPER[] = R"((
"$1" --config-file="$2" --nofork --nopidfile --print-address=3 & daemon=$!
exec 3>&-
flock -x "$3" sh -c 'rm -f "$1" "$3"; kill -KILL "$2"' sh "$4" "$daemon" "$2" & keeper=$!
wait "$daemon"
kill "$keeper"
) &)";

struct Files {
    std::string socket;
    std::string lock;
    std::string configuration;
};

bool isInstalled(const std::string& program) {
    const std::string path = kernel::hostEnvironment("PATH");
    std::istringstream folders(path.empty() ? "/usr/bin:/bin" : path);
    for (std::string folder; std::getline(folders, folder, ':');) {
        folder += '/';
        folder += program;
        if (access(folder.c_str(), X_OK) == 0) {
            return true;
        }
    }
    return false;
}

/// With the limits that a session's bus has.
bool writeConfiguration(const Files& files) {
    std::ofstream stream(files.configuration);
    stream << "<busconfig><type>session</type><listen>" << addressOfSocket(files.socket)
           << "</listen><auth>EXTERNAL</auth><standard_session_servicedirs/>";
    for (const char* limit :
         {"max_match_rules_per_connection", "max_replies_per_connection",
          "max_completed_connections", "max_connections_per_user", "max_names_per_connection"}) {
        stream << "<limit name=\"" << limit << "\">50000</limit>";
    }
    stream << "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
              "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n";
    stream.close();
    return !stream.fail();
}

/// In a session of its own and without anybody's streams; the daemon's line goes to `ready`.
bool startKeeper(const Files& files, int ready) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_RDWR, 0);
    }
    posix_spawn_file_actions_adddup2(&actions, ready, READY_DESCRIPTOR);
    posix_spawn_file_actions_addclosefrom_np(&actions, READY_DESCRIPTOR + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // What the starter ignores or holds back is no concern of theirs.
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes, &signals);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    const char* arguments[] = {"sh",
                               "-c",
                               KEEPER,
                               "sh",
                               DAEMON,
                               files.configuration.c_str(),
                               files.lock.c_str(),
                               files.socket.c_str(),
                               nullptr};
    pid_t shell = -1;
    const int failure = posix_spawn(&shell, "/bin/sh", &actions, &attributes,
                                    const_cast<char* const*>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    // Where ends of children are ignored it is collected by nobody.
    return failure == 0 && (waitpid(shell, nullptr, 0) == shell || errno == ECHILD);
}

/// For as long as this process lives.
bool holdBus(const Files& files) {
    static const int held =
        open(files.lock.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (held < 0) {
        return false;
    }
    // For the moment in which a keeper ends its daemon.
    for (DWORD waited = 0; flock(held, LOCK_SH | LOCK_NB) != 0; waited += STEP_MILLISECONDS) {
        if (waited >= START_MILLISECONDS) {
            return false;
        }
        Sleep(STEP_MILLISECONDS);
    }
    return true;
}

bool isNameShortEnough(const std::string& socket) {
    return socket.size() < sizeof sockaddr_un{}.sun_path;
}

/// Until the daemon has written its line; false when it has ended, or does not come up.
bool awaitLine(int ready) {
    pollfd wait{ready, POLLIN, 0};
    char byte = 0;
    return poll(&wait, 1, static_cast<int>(START_MILLISECONDS)) > 0 && read(ready, &byte, 1) == 1;
}

/// With the mutex in hand.
bool startBus(const Files& files) {
    if (listensAt(files.socket)) {
        return true;
    }
    unlink(files.socket.c_str());
    int ready[2];
    if (!writeConfiguration(files) || pipe2(ready, O_CLOEXEC) != 0) {
        return false;
    }
    const bool isStarted = startKeeper(files, ready[1]);
    close(ready[1]);
    const bool isThere = isStarted && awaitLine(ready[0]);
    close(ready[0]);
    return isThere;
}

bool startBusInTurn(const Files& files, std::string* why) {
    if (!isInstalled(DAEMON)) {
        *why =
            "there is no session bus, and the program dbus-daemon, which would be one, is not "
            "installed";
        return false;
    }
    HANDLE const mutex = CreateMutexA(false, START_MUTEX);
    const bool isTurn =
        mutex != nullptr && WaitForSingleObject(mutex, 2 * START_MILLISECONDS) != WAIT_TIMEOUT;
    const bool isStarted = isTurn && startBus(files);
    if (isTurn) {
        ReleaseMutex(mutex);
    }
    CloseHandle(mutex);
    if (!isStarted) {
        *why = "there is no session bus, and dbus-daemon could not be started";
    }
    return isStarted;
}

}  // namespace

/// An address may have these characters; the others are told by their numbers.
std::string addressOfSocket(const std::string& path) {
    std::string address = "unix:path=";
    for (const char character : path) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0 || std::strchr("-_/.", character) != nullptr) {
            address += character;
        } else {
            char number[4];
            std::snprintf(number, sizeof number, "%%%02x", unsigned{byte});
            address += number;
        }
    }
    return address;
}

bool listensAt(const std::string& socketPath) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    if (!isNameShortEnough(socketPath)) {
        return false;
    }
    std::memcpy(name.sun_path, socketPath.c_str(), socketPath.size() + 1);
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    const bool isThere =
        probe >= 0 && (connect(probe, reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0 ||
                       errno == EAGAIN);
    if (probe >= 0) {
        close(probe);
    }
    return isThere;
}

bool isPrivateBus(const std::string& address) {
    desktop::Attachment* desktop = desktop::Attachment::get();
    const std::string own =
        desktop != nullptr ? addressOfSocket(desktop->folderPath() + "/bus") : "";
    // The daemon's number may stand behind it.
    return !own.empty() && (address == own || address.starts_with(own + ","));
}

std::string addressOfPrivateBus(std::string* why) {
    desktop::Attachment* desktop = desktop::Attachment::get();
    if (desktop == nullptr) {
        *why = "there is no session bus, and no desktop to have one of its own";
        return "";
    }
    const std::string& folder = desktop->folderPath();
    const Files files{folder + "/bus", folder + "/bus.lock", folder + "/bus.conf"};
    if (!isNameShortEnough(files.socket)) {
        *why = "there is no session bus, and the name of the folder " + folder +
               " is too long for a bus of the desktop's own; set XDG_RUNTIME_DIR to a shorter one";
        return "";
    }
    if (!holdBus(files)) {
        *why = "there is no session bus, and the file " + files.lock + " cannot be locked";
        return "";
    }
    return listensAt(files.socket) || startBusInTurn(files, why) ? addressOfSocket(files.socket)
                                                                 : "";
}

}  // namespace juntora::automation
