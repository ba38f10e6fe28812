#include "tests/support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "tests/support/ProcessDescriptor.h"

namespace juntora::test {
namespace {

struct Pipe {
    Descriptor read;
    Descriptor write;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("no pipe: ") + std::strerror(errno));
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers(texts.size() + 1);
    std::transform(texts.begin(), texts.end(), pointers.begin(),
                   [](std::string& text) { return text.data(); });
    return pointers;
}

/// In the child: becomes the program, as it would start from a shell.
[[noreturn]] void execute(std::vector<std::string> arguments, ChildProcess::Options options,
                          pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    signal(SIGPIPE, SIG_DFL);
    for (std::string& setting : options.environment) {
        putenv(setting.data());
    }
    if (getppid() == parent && (options.folder.empty() || chdir(options.folder.c_str()) == 0)) {
        execv(arguments[0].c_str(), pointersTo(arguments).data());
    }
    std::perror(("cannot run " + arguments[0]).c_str());
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
    Pipe input = makePipe();
    Pipe output = makePipe();
    Pipe errors = options.keepErrors ? makePipe() : Pipe{};
    const pid_t parent = getpid();
    m_pid = fork();
    if (m_pid == 0) {
        dup2(input.read, STDIN_FILENO);
        dup2(output.write, STDOUT_FILENO);
        if (options.keepErrors) {
            dup2(errors.write, STDERR_FILENO);
        }
        execute(std::move(arguments), options, parent);
    }
    m_process = openProcess(m_pid);
    if (m_process < 0) {
        throw std::runtime_error(std::string("no child: ") + std::strerror(errno));
    }
    m_input = std::move(input.write);
    m_output = std::move(output.read);
    m_errorOutput = std::move(errors.read);
    fcntl(m_output, F_SETFL, O_NONBLOCK);
    fcntl(m_errorOutput, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
    if (m_process >= 0 && !m_result) {  // Nothing is left to an object that was moved from.
        kill();
        collect();
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

bool ChildProcess::writeLine(std::string_view line) {
    std::string left = std::string(line) + "\n";
    while (!left.empty() && m_input >= 0) {
        const ssize_t step = write(m_input, left.data(), left.size());
        if (step < 0 && errno != EINTR) {
            return false;
        }
        left.erase(0, static_cast<std::size_t>(std::max<ssize_t>(step, 0)));
    }
    return m_input >= 0;
}

void ChildProcess::drain(Descriptor& descriptor, std::string& into) {
    std::array<char, 4096> part{};
    ssize_t step = 0;
    while (descriptor >= 0 && (step = read(descriptor, part.data(), part.size())) != 0) {
        if (step > 0) {
            into.append(part.data(), static_cast<std::size_t>(step));
        } else if (errno != EINTR) {
            return;
        }
    }
    descriptor.reset();
}

/// Takes in what has come, after waiting for output or, with `untilEnd`, also for the child's end.
/// False when the deadline has passed, or nothing can come any more.
bool ChildProcess::waitForEvent(Deadline deadline, bool untilEnd) {
    std::array<pollfd, 3> watched{{{m_output, POLLIN, 0},
                                   {m_errorOutput, POLLIN, 0},
                                   {untilEnd ? m_process : -1, POLLIN, 0}}};
    if (m_output < 0 && m_errorOutput < 0 && !untilEnd) {
        return false;
    }
    const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
    const int timeout = static_cast<int>(std::max<Milliseconds::rep>(left.count(), 0));
    const int ready = poll(watched.data(), watched.size(), timeout);
    const bool hasEnded = watched[2].revents != 0;
    if (hasEnded) {
        collect();
    }
    drain(m_output, m_read);
    drain(m_errorOutput, m_errors);
    return ready != 0 && !hasEnded;
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
