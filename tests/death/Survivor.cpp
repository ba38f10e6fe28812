#include "tests/death/Survivor.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace juntora::test {
namespace {

constexpr char ATTEND = 'a';
constexpr char CHECK = 'c';
constexpr std::size_t MAX_ANSWER = 64 * 1024;

void reply(int channel, const std::string& text) {
    send(channel, text.data(), std::min(text.size(), MAX_ANSWER), MSG_NOSIGNAL | MSG_EOR);
}

void obey(Scenario& scenario, int channel) {
    char command = 0;
    if (recv(channel, &command, 1, 0) != 1) {
        _exit(0);
    }
    if (command == ATTEND) {
        scenario.attend();
        return;
    }
    Findings findings;
    scenario.check(findings);
    reply(channel, "." + findings.text());
}

[[noreturn]] void survive(Scenario& scenario, int channel, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (getppid() != parent) {
        _exit(1);
    }
    try {
        scenario.settle();
        reply(channel, ".");
        for (;;) {
            std::array<pollfd, 2> watched{
                {{channel, POLLIN, 0}, {scenario.descriptor(), POLLIN, 0}}};
            poll(watched.data(), watched.size(), -1);
            if (watched[1].revents != 0) {
                scenario.serve();
            }
            if (watched[0].revents != 0) {
                obey(scenario, channel);
            }
        }
    } catch (const std::exception& error) {
        reply(channel, std::string("!") + error.what());
    }
    _exit(1);
}

/// Where a process hangs, for a person who looks for it.
std::string whereabouts(pid_t pid) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/syscall");
    std::string line;
    std::getline(file, line);
    return line;
}

}  // namespace

Survivor::Survivor(Scenario& scenario) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::runtime_error("no channel for the survivor");
    }
    const pid_t parent = getpid();
    std::fflush(nullptr);
    m_pid = fork();
    if (m_pid == 0) {
        close(ends[0]);
        survive(scenario, ends[1], parent);
    }
    close(ends[1]);
    m_channel = ends[0];
    const std::string problem = answer(std::chrono::seconds(20));
    if (!problem.empty()) {
        throw std::runtime_error("the survivor did not settle: " + problem);
    }
}

Survivor::~Survivor() {
    close(m_channel);
    kill(m_pid, SIGKILL);
    while (waitpid(m_pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void Survivor::attend() { send(m_channel, &ATTEND, 1, MSG_NOSIGNAL); }

std::string Survivor::check(std::chrono::milliseconds patience) {
    send(m_channel, &CHECK, 1, MSG_NOSIGNAL);
    return answer(patience);
}

std::string Survivor::answer(std::chrono::milliseconds patience) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point deadline = Clock::now() + patience;
    pollfd watched{m_channel, POLLIN, 0};
    int ready = -1;
    do {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        ready = poll(&watched, 1, std::max(static_cast<int>(left.count()), 0));
    } while (ready < 0 && errno == EINTR);
    if (ready == 0) {
        return "no answer after " + std::to_string(patience.count()) +
               " ms (system call, arguments, stack, instruction: " + whereabouts(m_pid) + ")";
    }
    std::string text(MAX_ANSWER, '\0');
    const ssize_t length = recv(m_channel, text.data(), text.size(), 0);
    if (length <= 0) {
        int status = 0;
        waitpid(m_pid, &status, WNOWAIT | WNOHANG);
        return "the survivor ended (status " + std::to_string(status) + ")";
    }
    text.resize(static_cast<std::size_t>(length));
    return text.substr(text.front() == '.' ? 1 : 0);
}

}  // namespace juntora::test
