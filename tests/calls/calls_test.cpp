// How many system calls the road of a request takes, and an idle hub: counts have no noise, unlike
// times. Both sides are traced.
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <algorithm>
#include <map>

#include <climits>

#include "platform/desktop/message.h"
#include "tests/support/HubProcess.h"
#include "tests/support/Markers.h"

namespace juntora::test {
namespace {

/// Follows processes from system call to system call and counts those of the measured stretch.
class Tracer {
public:
    explicit Tracer(bool isMeasuring) : m_isMeasuring(isMeasuring) {}

    void follow(pid_t process) {
        ASSERT_EQ(0, ptrace(PTRACE_SEIZE, process, nullptr, PTRACE_O_TRACESYSGOOD));
        ASSERT_EQ(0, ptrace(PTRACE_INTERRUPT, process, nullptr, nullptr));
        ASSERT_EQ(process, waitpid(process, nullptr, __WALL));
        resume(process, 0);
    }

    /// Until `process` has ended, with its exit status, or `calls` have been counted.
    int runUntilEndOf(pid_t process, int calls = INT_MAX) {
        while (m_total < calls) {
            int status = 0;
            const pid_t stopped = waitpid(-1, &status, __WALL);
            if (WIFSTOPPED(status)) {
                handleStop(stopped, status);
            } else if (stopped == process) {
                return status;
            }
        }
        return 0;
    }

    int total() const { return m_total; }
    const std::map<std::uint64_t, int>& counts() const { return m_counts; }

private:
    static void resume(pid_t process, int signal) {
        ptrace(PTRACE_SYSCALL, process, nullptr, signal);
    }

    void handleStop(pid_t process, int status) {
        const int signal = WSTOPSIG(status);
        if (signal != (SIGTRAP | 0x80)) {
            const bool isEvent = status >> 16 != 0;
            resume(process, isEvent ? 0 : signal);
            return;
        }
        __ptrace_syscall_info call{};
        ptrace(static_cast<__ptrace_request>(PTRACE_GET_SYSCALL_INFO), process, sizeof call, &call);
        if (call.op == PTRACE_SYSCALL_INFO_ENTRY) {
            count(call);
        }
        resume(process, 0);
    }

    void count(const __ptrace_syscall_info& call) {
        if (call.entry.nr == static_cast<std::uint64_t>(MARKER_CALL)) {
            m_isMeasuring = call.entry.args[0] == static_cast<std::uint64_t>(MARKER_BEGIN);
        } else if (m_isMeasuring && call.entry.nr != SYS_clock_nanosleep) {
            ++m_counts[call.entry.nr];
            ++m_total;
        }
    }

    bool m_isMeasuring;
    std::map<std::uint64_t, int> m_counts;
    int m_total = 0;
};

class CallsTest : public HubProcess {
protected:
    /// System calls of client and hub together for each request.
    double callsEach(int calls, const char* pause) {
        startHub();
        ChildProcess client("test_tool", {std::to_string(calls), pause}, {{"TOOL_DOES=ask"}});
        EXPECT_EQ("signed on", client.readLine());
        Tracer tracer(false);
        tracer.follow(m_hub->pid());
        tracer.follow(client.pid());
        client.writeLine("go");
        EXPECT_EQ(0, tracer.runUntilEndOf(client.pid()));
        for (const auto& [number, count] : tracer.counts()) {
            std::printf("  system call %lu: %d\n", static_cast<unsigned long>(number), count);
        }
        return static_cast<double>(tracer.total()) / calls;
    }
};

TEST_F(CallsTest, BackToBackARequestTakesHardlyAny) {
    // While somebody else has one of two cores for a moment both sides sleep, as they should. What
    // the road takes by itself shows in the best of a few rounds.
    constexpr int ROUNDS = 5;
    double best = callsEach(20'000, "0");
    for (int round = 1; round < ROUNDS && best > 0.1; ++round) {
        best = std::min(best, callsEach(20'000, "0"));
    }
    std::printf("back to back: %.4f system calls a round trip\n", best);
    EXPECT_LE(best, 0.1);
}

TEST_F(CallsTest, PacedARequestTakesTwoWakesAndTwoSleeps) {
    const double calls = callsEach(2'000, "300");
    std::printf("paced: %.4f system calls a round trip\n", calls);
    EXPECT_LE(calls, 4.1);
}

TEST_F(CallsTest, AnIdleHubMakesThoseOfItsTimerAlone) {
    startHub();
    Tracer tracer(true);
    tracer.follow(m_hub->pid());
    constexpr int CALLS = 4;
    constexpr DWORD TICK = 4'000;
    const DWORD start = GetTickCount();
    tracer.runUntilEndOf(m_hub->pid(), CALLS);
    // Each tick costs the wait for the next one. The first calls are those that the tracer's coming
    // has broken off.
    EXPECT_GE(GetTickCount() - start, (CALLS - 2) * TICK - TICK / 2);
    for (const auto& [number, count] : tracer.counts()) {
        EXPECT_TRUE(number == SYS_futex || number == SYS_restart_syscall)
            << "system call " << number << ", " << count << " times";
    }
}

}  // namespace
}  // namespace juntora::test
