// A process that is run instruction by instruction, to a breakpoint, or to a mark, and killed
// there.
#pragma once

#include <sys/types.h>
#include <sys/user.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include "tests/death/Marker.h"

namespace juntora::test {

using Address = std::uintptr_t;
using Milliseconds = std::chrono::milliseconds;

/// The tracee did what the harness cannot go on from; what() says what.
struct TraceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A child forked from this process, whose code therefore lies where this process's does. It is
/// killed and collected with the object. All calls from the thread that made it, which must have no
/// other child whose stops it waits for meanwhile.
class Tracee {
public:
    static constexpr Milliseconds PATIENCE{10'000};

    enum class Stop {
        MARK,         ///< In mark(); see lastMark().
        BREAKPOINT,   ///< At the breakpoint, its instruction not yet run.
        STEP,         ///< One instruction later.
        SYSTEM_CALL,  ///< At the entry of a system call or, the next time, behind it.
        FAULT,        ///< A memory access was refused and has not been made; see faultAddress().
        ENDED,        ///< Exited or killed.
        TIMEOUT,      ///< Still running, commonly in a system call that blocks.
    };

    /// Runs `body` in the child, up to its first mark.
    explicit Tracee(const std::function<void()>& body);
    ~Tracee();
    Tracee(const Tracee&) = delete;
    Tracee& operator=(const Tracee&) = delete;

    pid_t pid() const { return m_pid; }
    Mark lastMark() const { return m_lastMark; }
    Address faultAddress() const { return m_faultAddress; }

    /// Runs on to a mark, a breakpoint, a fault or the end.
    Stop run(Milliseconds patience = PATIENCE);
    /// As run(), but also stops at and behind the next system call.
    Stop runToSystemCall(Milliseconds patience = PATIENCE);
    /// At the entry of a system call: goes back to before its instruction, the call not made.
    void takeBackSystemCall();
    /// Runs on to `place`; throws when it comes to something else.
    void runTo(Mark place);
    /// Runs one instruction; of an instruction that repeats itself, one round.
    Stop step(Milliseconds patience = PATIENCE);

    /// At most one at a time. The instruction at a breakpoint is run by step() once it is cleared.
    void setBreakpoint(Address address);
    void clearBreakpoint();

    user_regs_struct registers() const;
    void setRegisters(const user_regs_struct& values);
    Address instructionPointer() const;
    /// Has the tracee make a system call of up to three arguments, between two instructions of its
    /// own, and returns the result.
    long systemCall(long number, long first, long second, long third);

    /// Kills it, wherever it is, and returns once the kernel has released all that it held.
    void kill();

private:
    Stop resume(int request, Milliseconds patience);
    Stop wait(Milliseconds patience);
    Stop classify(int status, bool stepped);
    std::optional<int> awaitStatus(Milliseconds patience);

    pid_t m_pid = -1;
    bool m_ended = false;
    int m_request = 0;  ///< By which it was last set going.
    Mark m_lastMark{};
    Address m_faultAddress = 0;
    Address m_breakpoint = 0;
    std::uint64_t m_replaced = 0;
};

}  // namespace juntora::test
