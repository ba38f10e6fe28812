#include "tests/death/Tracee.h"

#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>

namespace juntora::test {
namespace {

using Clock = std::chrono::steady_clock;

template <typename Data>
long request(int what, pid_t pid, Address address, Data data) {
    errno = 0;
    const long result = ptrace(static_cast<__ptrace_request>(what), pid, address, data);
    if (errno != 0) {
        throw TraceError("ptrace request " + std::to_string(what) + ": " + std::strerror(errno));
    }
    return result;
}

sigset_t childSignal() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGCHLD);
    return set;
}

[[noreturn]] void runBody(const std::function<void()>& body, pid_t parent) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const sigset_t set = childSignal();
    sigprocmask(SIG_UNBLOCK, &set, nullptr);
    if (getppid() != parent || ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) {
        _exit(1);
    }
    try {
        body();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "in the tracee: %s\n", error.what());
    }
    _exit(0);
}

constexpr std::uint64_t TRAP_INSTRUCTION = 0xCC;
constexpr int SYSTEM_CALL_BIT = 0x80;
constexpr unsigned SYSTEM_CALL_BYTES = 2;
constexpr unsigned long long NO_SYSTEM_CALL = ~0ULL;

Address wordOf(Address address) { return address & ~(sizeof(std::uint64_t) - 1); }

}  // namespace

Tracee::Tracee(const std::function<void()>& body) {
    // Blocked, so that it stays pending for sigtimedwait.
    const sigset_t set = childSignal();
    sigprocmask(SIG_BLOCK, &set, nullptr);
    const pid_t parent = getpid();
    std::fflush(nullptr);
    m_pid = fork();
    if (m_pid == 0) {
        runBody(body, parent);
    }
    if (m_pid < 0) {
        throw TraceError(std::string("no process: ") + std::strerror(errno));
    }
    if (wait(PATIENCE) != Stop::MARK) {
        kill();
        throw TraceError("the tracee did not come to its first mark");
    }
    request(PTRACE_SETOPTIONS, m_pid, 0, PTRACE_O_EXITKILL | PTRACE_O_TRACESYSGOOD);
}

Tracee::~Tracee() { kill(); }

void Tracee::kill() {
    if (m_ended) {
        return;
    }
    ::kill(m_pid, SIGKILL);
    int status = 0;
    while (waitpid(m_pid, &status, __WALL) < 0 ? errno == EINTR : WIFSTOPPED(status)) {
    }
    m_ended = true;
}

std::optional<int> Tracee::awaitStatus(Milliseconds patience) {
    const sigset_t set = childSignal();
    const Clock::time_point deadline = Clock::now() + patience;
    for (;;) {
        int status = 0;
        const pid_t changed = waitpid(m_pid, &status, WNOHANG | __WALL);
        if (changed == m_pid) {
            return status;
        }
        const auto left =
            std::chrono::duration_cast<std::chrono::nanoseconds>(deadline - Clock::now()).count();
        if (changed < 0 || left <= 0) {
            return std::nullopt;
        }
        const timespec span{left / 1'000'000'000, left % 1'000'000'000};
        sigtimedwait(&set, nullptr, &span);
    }
}

Tracee::Stop Tracee::classify(int status, bool stepped) {
    if (!WIFSTOPPED(status)) {
        m_ended = true;
        return Stop::ENDED;
    }
    const int signal = WSTOPSIG(status);
    if (signal == SIGSEGV) {
        siginfo_t info{};
        request(PTRACE_GETSIGINFO, m_pid, 0, &info);
        m_faultAddress = reinterpret_cast<Address>(info.si_addr);
        return Stop::FAULT;
    }
    if (signal == (SIGTRAP | SYSTEM_CALL_BIT)) {
        return Stop::SYSTEM_CALL;
    }
    if (signal != SIGTRAP) {
        throw TraceError(std::string("the tracee got ") + strsignal(signal));
    }
    const Address at = instructionPointer();
    if (at == reinterpret_cast<Address>(juntora_death_marked)) {
        m_lastMark = static_cast<Mark>(registers().rdi);
        return Stop::MARK;
    }
    if (stepped) {
        return Stop::STEP;
    }
    if (m_breakpoint != 0 && at == m_breakpoint + 1) {
        user_regs_struct now = registers();
        now.rip = m_breakpoint;
        setRegisters(now);
        return Stop::BREAKPOINT;
    }
    throw TraceError("the tracee met a trap of its own");
}

Tracee::Stop Tracee::wait(Milliseconds patience) {
    const std::optional<int> status = awaitStatus(patience);
    return status ? classify(*status, m_request == PTRACE_SINGLESTEP) : Stop::TIMEOUT;
}

Tracee::Stop Tracee::resume(int what, Milliseconds patience) {
    m_request = what;
    request(what, m_pid, 0, nullptr);
    return wait(patience);
}

Tracee::Stop Tracee::run(Milliseconds patience) { return resume(PTRACE_CONT, patience); }

Tracee::Stop Tracee::step(Milliseconds patience) { return resume(PTRACE_SINGLESTEP, patience); }

Tracee::Stop Tracee::runToSystemCall(Milliseconds patience) {
    return resume(PTRACE_SYSCALL, patience);
}

void Tracee::takeBackSystemCall() {
    user_regs_struct before = registers();
    const unsigned long long call = before.orig_rax;
    before.orig_rax = NO_SYSTEM_CALL;
    setRegisters(before);
    if (runToSystemCall() != Stop::SYSTEM_CALL) {
        throw TraceError("a system call could not be taken back");
    }
    before.rax = call;
    before.rip -= SYSTEM_CALL_BYTES;
    setRegisters(before);
}

void Tracee::runTo(Mark place) {
    const Stop stop = m_lastMark == place ? Stop::MARK : run();
    if (stop != Stop::MARK || m_lastMark != place) {
        throw TraceError("the tracee stopped (" + std::to_string(static_cast<int>(stop)) +
                         ") before mark " + std::to_string(static_cast<long>(place)));
    }
}

void Tracee::setBreakpoint(Address address) {
    m_breakpoint = address;
    const Address word = wordOf(address);
    m_replaced = static_cast<std::uint64_t>(request(PTRACE_PEEKTEXT, m_pid, word, nullptr));
    const unsigned shift = 8 * static_cast<unsigned>(address - word);
    request(PTRACE_POKETEXT, m_pid, word,
            (m_replaced & ~(0xFFULL << shift)) | TRAP_INSTRUCTION << shift);
}

void Tracee::clearBreakpoint() {
    request(PTRACE_POKETEXT, m_pid, wordOf(m_breakpoint), m_replaced);
    m_breakpoint = 0;
}

user_regs_struct Tracee::registers() const {
    user_regs_struct now{};
    request(PTRACE_GETREGS, m_pid, 0, &now);
    return now;
}

void Tracee::setRegisters(const user_regs_struct& values) {
    user_regs_struct copy = values;
    request(PTRACE_SETREGS, m_pid, 0, &copy);
}

Address Tracee::instructionPointer() const {
    return static_cast<Address>(request(PTRACE_PEEKUSER, m_pid, offsetof(user, regs.rip), nullptr));
}

long Tracee::systemCall(long number, long first, long second, long third) {
    const user_regs_struct before = registers();
    user_regs_struct call = before;
    call.rip = reinterpret_cast<Address>(juntora_death_system_call);
    call.rax = static_cast<unsigned long long>(number);
    call.orig_rax = NO_SYSTEM_CALL;  // None that would be begun anew.
    call.rdi = static_cast<unsigned long long>(first);
    call.rsi = static_cast<unsigned long long>(second);
    call.rdx = static_cast<unsigned long long>(third);
    setRegisters(call);
    if (step() != Stop::STEP) {
        throw TraceError("a system call for the tracee was not made");
    }
    const long result = static_cast<long>(registers().rax);
    setRegisters(before);
    return result;
}

}  // namespace juntora::test
