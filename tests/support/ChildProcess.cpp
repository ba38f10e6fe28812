#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "tests/support/ProcessDescriptor.h"

namespace juntora::test {

namespace {

struct Pipe {
    int read = -1;
    int write = -1;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
    }
    return {ends[0], ends[1]};
}

void closeEnd(int& descriptor) {
    if (descriptor >= 0) {
        close(descriptor);
    }
    descriptor = -1;
}

std::string nameOf(const std::string& assignment) {
    return assignment.substr(0, assignment.find('=') + 1);
}

std::vector<std::string> mergedEnvironment(const std::vector<std::string>& changes) {
    std::vector<std::string> merged;
    const auto isChanged = [&](const std::string& entry) {
        return std::any_of(changes.begin(), changes.end(), [&](const std::string& change) {
            return nameOf(change) == nameOf(entry);
        });
    };
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (!isChanged(*entry)) {
            merged.emplace_back(*entry);
        }
    }
    for (const std::string& change : changes) {
        if (nameOf(change) != change) {
            merged.push_back(change);
        }
    }
    return merged;
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts) {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

struct Launch {
    std::string path;
    std::vector<char*> arguments;
    std::vector<char*> environment;
    const char* folder;
    int input;
    int output;
    int errorOutput;  ///< -1: the test's own.
    int failure;      ///< Takes errno when the program cannot be executed; closed by the exec.
    pid_t parent;
};

[[noreturn]] void runChild(const Launch& launch) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    const bool ready = getppid() == launch.parent && dup2(launch.input, STDIN_FILENO) >= 0 &&
                       dup2(launch.output, STDOUT_FILENO) >= 0 &&
                       (launch.errorOutput < 0 || dup2(launch.errorOutput, STDERR_FILENO) >= 0) &&
                       (launch.folder == nullptr || chdir(launch.folder) == 0);
    if (ready) {
        execve(launch.path.c_str(), launch.arguments.data(), launch.environment.data());
    }
    const int error = errno;
    [[maybe_unused]] const ssize_t told = write(launch.failure, &error, sizeof error);
    _exit(127);
}

}  // namespace

std::string OwnProgram() { return std::filesystem::read_symlink("/proc/self/exe").string(); }

std::string ProgramFolder() {
    const char* folder = std::getenv("JUNTORA_TEST_BIN");
    if (folder != nullptr && *folder != '\0') {
        return folder;
    }
    return std::filesystem::path(OwnProgram()).parent_path().string();
}

ChildProcess::ChildProcess(const std::string& program, std::vector<std::string> arguments,
                           const Options& options) {
    // A child that has gone must be seen by the failing write, not end the test.
    signal(SIGPIPE, SIG_IGN);
    const bool bare = program.find('/') == std::string::npos;
    arguments.insert(arguments.begin(), bare ? ProgramFolder() + "/" + program : program);
    std::vector<std::string> environment = mergedEnvironment(options.environment);

    Pipe input = makePipe();
    Pipe output = makePipe();
    Pipe errors = options.keepErrors ? makePipe() : Pipe{};
    Pipe failure = makePipe();
    const Launch launch{arguments.front(),
                        pointersTo(arguments),
                        pointersTo(environment),
                        options.folder.empty() ? nullptr : options.folder.c_str(),
                        input.read,
                        output.write,
                        errors.write,
                        failure.write,
                        getpid()};
    m_pid = fork();
    if (m_pid == 0) {
        runChild(launch);
    }
    m_pidDescriptor = m_pid < 0 ? -1 : openProcess(m_pid);
    closeEnd(input.read);
    closeEnd(output.write);
    closeEnd(errors.write);
    closeEnd(failure.write);
    m_input = input.write;
    m_output = output.read;
    m_errorOutput = errors.read;
    for (const int descriptor : {m_output, m_errorOutput}) {
        if (descriptor >= 0) {
            fcntl(descriptor, F_SETFL, O_NONBLOCK);
        }
    }

    int error = m_pid < 0 ? errno : 0;
    [[maybe_unused]] const ssize_t told = read(failure.read, &error, sizeof error);
    closeEnd(failure.read);
    if (error != 0) {
        if (m_pid >= 0) {
            kill();
            collect();
        }
        for (int* descriptor : {&m_input, &m_output, &m_errorOutput, &m_pidDescriptor}) {
            closeEnd(*descriptor);
        }
        throw std::runtime_error("cannot run " + launch.path + ": " + std::strerror(error));
    }
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : m_pid(std::exchange(other.m_pid, -1)),
      m_pidDescriptor(std::exchange(other.m_pidDescriptor, -1)),
      m_input(std::exchange(other.m_input, -1)),
      m_output(std::exchange(other.m_output, -1)),
      m_errorOutput(std::exchange(other.m_errorOutput, -1)),
      m_read(std::move(other.m_read)),
      m_errors(std::move(other.m_errors)),
      m_result(other.m_result) {}

ChildProcess::~ChildProcess() {
    if (m_pid >= 0 && !m_result) {
        kill();
        collect();
    }
    for (int* descriptor : {&m_input, &m_output, &m_errorOutput, &m_pidDescriptor}) {
        closeEnd(*descriptor);
    }
}

void ChildProcess::collect() {
    int status = 0;
    pid_t collected = -1;
    do {
        collected = waitpid(m_pid, &status, 0);
    } while (collected < 0 && errno == EINTR);
    m_result = WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

bool ChildProcess::isRunning() { return !wait(Milliseconds(0)).has_value(); }

void ChildProcess::kill(int signal) {
    if (!m_result) {
        ::kill(m_pid, signal);
    }
}

void ChildProcess::closeInput() { closeEnd(m_input); }

bool ChildProcess::writeLine(std::string_view line) {
    const std::string whole = std::string(line) + "\n";
    std::size_t written = 0;
    while (written < whole.size() && m_input >= 0) {
        const ssize_t step = write(m_input, whole.data() + written, whole.size() - written);
        if (step < 0 && errno != EINTR) {
            return false;
        }
        written += step > 0 ? static_cast<std::size_t>(step) : 0;
    }
    return m_input >= 0;
}

bool ChildProcess::drain(int& descriptor, std::string& into) {
    std::array<char, 4096> part{};
    while (descriptor >= 0) {
        const ssize_t step = read(descriptor, part.data(), part.size());
        if (step > 0) {
            into.append(part.data(), static_cast<std::size_t>(step));
        } else if (step < 0 && errno == EAGAIN) {
            return true;
        } else if (step == 0 || errno != EINTR) {
            closeEnd(descriptor);
        }
    }
    return false;
}

/// Takes in what has come, after waiting for output or, with `untilEnd`, also for the child's end.
/// False when the deadline has passed, or nothing can come any more.
bool ChildProcess::waitForEvent(Deadline deadline, bool untilEnd) {
    std::array<pollfd, 3> watched{{{m_output, POLLIN, 0},
                                   {m_errorOutput, POLLIN, 0},
                                   {untilEnd ? m_pidDescriptor : -1, POLLIN, 0}}};
    if (m_output < 0 && m_errorOutput < 0 && !untilEnd) {
        return false;
    }
    const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
    const int timeout = static_cast<int>(std::max<Milliseconds::rep>(left.count(), 0));
    const int ready = poll(watched.data(), watched.size(), timeout);
    drain(m_output, m_read);
    drain(m_errorOutput, m_errors);
    if (watched[2].revents != 0) {
        collect();
        drain(m_output, m_read);
        drain(m_errorOutput, m_errors);
        return false;
    }
    return ready != 0;
}

std::optional<std::string> ChildProcess::takeLine() {
    const std::size_t end = m_read.find('\n');
    if (end == std::string::npos && (m_output >= 0 || m_read.empty())) {
        return std::nullopt;
    }
    std::string line = m_read.substr(0, end);
    m_read.erase(0, end == std::string::npos ? end : end + 1);
    return line;
}

std::optional<std::string> ChildProcess::readLine(Milliseconds timeout) {
    const Deadline deadline = std::chrono::steady_clock::now() + timeout;
    std::optional<std::string> line = takeLine();
    while (!line && m_output >= 0 && waitForEvent(deadline, false)) {
        line = takeLine();
    }
    return line ? line : takeLine();
}

std::optional<std::string> ChildProcess::readLineWith(std::string_view part, Milliseconds timeout) {
    const Deadline deadline = std::chrono::steady_clock::now() + timeout;
    while (true) {
        const auto left = deadline - std::chrono::steady_clock::now();
        std::optional<std::string> line = readLine(std::chrono::ceil<Milliseconds>(left));
        if (!line || line->find(part) != std::string::npos) {
            return line;
        }
    }
}

std::string ChildProcess::readAll(Milliseconds timeout) {
    const Deadline deadline = std::chrono::steady_clock::now() + timeout;
    while (m_output >= 0 && waitForEvent(deadline, false)) {
    }
    return std::exchange(m_read, std::string());
}

std::optional<int> ChildProcess::wait(Milliseconds timeout) {
    const Deadline deadline = std::chrono::steady_clock::now() + timeout;
    while (!m_result && waitForEvent(deadline, true)) {
    }
    return m_result;
}

}  // namespace juntora::test
