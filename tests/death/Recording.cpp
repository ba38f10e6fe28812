#include "tests/death/Recording.h"

#include <algorithm>
#include <bit>
#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "tests/death/Instruction.h"
#include "tests/death/WriteGuard.h"

namespace juntora::test {
namespace {

/// An instruction that is come to more often is in a loop.
constexpr std::uint32_t LOOP_ARRIVALS = 32;
/// How often a breakpoint is passed at most on the way to a death that is but a sample.
constexpr std::uint32_t MAX_ARRIVALS = 16;

constexpr std::uint64_t ROUNDS_KEPT = 16;

class Recorder {
public:
    Recorder(Tracee& tracee, const std::string& folder)
        : m_tracee(tracee), m_guard(tracee, folder) {
        m_guard.protect();
    }

    /// Whether the last instruction was one of a loop.
    bool isInLoop() const { return m_at.arrivals > LOOP_ARRIVALS; }

    /// One instruction. False when the operation is over.
    bool step() {
        arriveAt(m_tracee.instructionPointer());
        return note(advance(instructionAt(m_at.address)));
    }

    /// On to behind the next change. False when the operation is over.
    bool runOn() {
        const Tracee::Stop stop = m_tracee.runToSystemCall();
        if (stop == Tracee::Stop::SYSTEM_CALL) {
            m_tracee.takeBackSystemCall();
        }
        arriveAt(m_tracee.instructionPointer());
        return note(stop == Tracee::Stop::SYSTEM_CALL ? stepSystemCall() : stop);
    }

    Recording result() { return std::move(m_result); }

private:
    void arriveAt(Address address) {
        m_at = {};
        m_at.address = address;
        m_at.arrivals = ++m_arrivals[address];
    }

    Tracee::Stop advance(const Instruction& instruction) {
        switch (instruction.kind) {
            case InstructionKind::SYSTEM_CALL:
                return stepSystemCall();
            case InstructionKind::REPEATING:
                m_at.rounds = m_tracee.registers().rcx;
                return runPast(m_tracee, instruction);
            default:
                return m_tracee.step();
        }
    }

    Tracee::Stop stepSystemCall() {
        m_at.systemCalls = ++m_systemCalls;
        m_guard.release();
        const Tracee::Stop stop = m_tracee.step();
        if (stop == Tracee::Stop::STEP) {
            m_guard.refresh();
            m_guard.protect();
        }
        return stop;
    }

    /// What the instruction has come to. False when the operation is over.
    bool note(Tracee::Stop stop) {
        if (stop == Tracee::Stop::FAULT && m_guard.covers(m_tracee.faultAddress())) {
            m_at.written = m_guard.placeOf(m_tracee.faultAddress());
            m_at.writes = ++m_writes[m_at.written];
            stop = makeChange();
        }
        if (stop == Tracee::Stop::STEP) {
            keep();
            return true;
        }
        const bool atEnd = stop == Tracee::Stop::MARK && m_tracee.lastMark() == Mark::END;
        if (atEnd) {
            m_guard.release();  // The kernel marks there what a dying process holds.
        } else if (stop != Tracee::Stop::ENDED) {
            throw TraceError("the operation cannot be recorded: stop " +
                             std::to_string(static_cast<int>(stop)) + " at " + m_at.describe());
        }
        return false;
    }

    /// Runs the instruction whose write was refused; a repeating one to its end.
    Tracee::Stop makeChange() {
        const Instruction instruction = instructionAt(m_at.address);
        if (instruction.kind != InstructionKind::REPEATING) {
            return m_guard.stepThrough();
        }
        m_at.rounds = m_tracee.registers().rcx;
        m_guard.release();
        const Tracee::Stop stop = runPast(m_tracee, instruction);
        m_guard.protect();
        return stop;
    }

    void keep() {
        if (m_at.rounds != 0 && !m_at.written.file.empty()) {
            keepRounds();
        } else if (!m_at.written.file.empty() || m_at.systemCalls != 0) {
            m_result.changes.push_back(m_at);
        } else if (std::has_single_bit(m_at.arrivals) && m_at.arrivals <= MAX_ARRIVALS) {
            m_result.others.push_back(m_at);
        }
    }

    /// The first rounds, the last ones and some between them: what a round of thousands leaves
    /// half-done hardly differs from what its neighbours do.
    void keepRounds() {
        const std::uint64_t all = m_at.rounds;
        const std::uint64_t stride = std::max<std::uint64_t>(all / ROUNDS_KEPT, 1);
        for (std::uint64_t round = 1; round <= all; ++round) {
            if (round <= 2 || round + 1 >= all || round % stride == 0) {
                m_at.rounds = round;
                m_result.changes.push_back(m_at);
            }
        }
    }

    Tracee& m_tracee;
    WriteGuard m_guard;
    std::unordered_map<Address, std::uint32_t> m_arrivals;
    std::map<Place, std::uint32_t> m_writes;
    std::uint32_t m_systemCalls = 0;
    DeathPoint m_at;
    Recording m_result;
};

}  // namespace

Recording record(Tracee& tracee, const std::string& folder) {
    Recorder recorder(tracee, folder);
    while (recorder.isInLoop() ? recorder.runOn() : recorder.step()) {
    }
    return recorder.result();
}

}  // namespace juntora::test
