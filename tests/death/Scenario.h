// An operation under which a process may die, and what those who live on must find.
#pragma once

#include <sys/types.h>
#include <time.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace juntora::test {

inline std::int64_t monotonicNanoseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * 1'000'000'000LL + now.tv_nsec;
}

/// What the processes of a run tell one another past the desktop; shared by all of them.
struct Board {
    std::atomic<std::uint32_t> round;  ///< Counts the deaths.
    std::atomic<pid_t> victim;
    std::atomic<pid_t> mender;
    std::atomic<std::int64_t> diedAt;  ///< Nanoseconds of the monotonic clock; 0 before.
    std::atomic<std::uint32_t> survivorWindow;
    std::atomic<std::uint32_t> victimWindow;  ///< 0 unless the victim has one.
    /// The scenario's own; zeroed before each death.
    std::atomic<std::int64_t> notes[8];
};

/// What a check found wrong; all of it, not the first alone.
class Findings {
public:
    /// Notes `complaint` unless `holds`; returns `holds`.
    bool expect(bool holds, const std::string& complaint) {
        if (!holds) {
            m_text += (m_text.empty() ? "" : "; ") + complaint;
        }
        return holds;
    }
    const std::string& text() const { return m_text; }

private:
    std::string m_text;
};

/// Each process of a run is a fork with a copy of the scenario object of its own, in which it may
/// keep what it needs.
class Scenario {
public:
    virtual ~Scenario() = default;

    /// Letters and digits.
    virtual std::string name() const = 0;

    // --- In the victim ---------------------------------------------------------------------------
    /// Before the operation.
    virtual void prepare() {}
    /// The operation, in which the victim dies.
    virtual void operate() = 0;

    // --- In the survivor, a process that lives through many deaths -------------------------------
    virtual void settle() {}
    /// A descriptor that is readable when serve() has something to do; -1 for none.
    virtual int descriptor() { return -1; }
    virtual void serve() {}
    /// What the survivor does beside the operation; called once the victim has called mark(READY)
    /// in prepare().
    virtual void attend() {}
    /// After the death.
    virtual void check(Findings& findings) = 0;

    // --- In the mender, which may die of the same ------------------------------------------------
    virtual void prepareMending() {}
    /// The next operation after the death; it mends what the victim has left.
    virtual void mend() = 0;

    Board* board = nullptr;
};

}  // namespace juntora::test
