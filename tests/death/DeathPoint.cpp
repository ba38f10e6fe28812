#include "tests/death/DeathPoint.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <cstdlib>
#include <memory>
#include <sstream>

#include "tests/death/Instruction.h"

namespace juntora::test {
namespace {

/// A system call that has not returned by then blocks; the process dies in it.
constexpr Milliseconds BLOCKED{20};
/// Passing a breakpoint so often costs about as much as meeting the writes to one page.
constexpr std::uint32_t MANY_ARRIVALS = 32;

/// The next instruction, with all its rounds.
Tracee::Stop runOne(Tracee& process) {
    const Instruction instruction = instructionAt(process.instructionPointer());
    return instruction.kind == InstructionKind::REPEATING ? runPast(process, instruction)
                                                          : process.step();
}

/// The last instruction of a process that stands before it.
void runLast(Tracee& process, const DeathPoint& point) {
    if (point.rounds != 0) {
        runRounds(process, instructionAt(point.address), point.rounds);
    } else {
        process.step(BLOCKED);
    }
}

bool reachByBreakpoint(Tracee& process, const DeathPoint& point) {
    for (std::uint32_t arrival = 1;; ++arrival) {
        process.setBreakpoint(point.address);
        if (process.run() != Tracee::Stop::BREAKPOINT) {
            return false;
        }
        process.clearBreakpoint();
        if (arrival == point.arrivals) {
            runLast(process, point);
            return true;
        }
        if (runOne(process) != Tracee::Stop::STEP) {
            return false;
        }
    }
}

/// Meets every write to the page in which the point writes, which is only now and then refused to
/// the process, and never to the kernel: system calls write, and so does the end of a process.
bool reachByPage(Tracee& process, const DeathPoint& point, const std::string& folder) {
    WriteGuard guard(process, folder);
    for (std::uint32_t writes = 0;;) {
        const Address written = guard.addressOf(point.written);
        if (written != 0) {
            guard.protectPage(written);
        }
        const Tracee::Stop stop = process.runToSystemCall();
        if (stop == Tracee::Stop::SYSTEM_CALL) {
            process.takeBackSystemCall();
        }
        if (written != 0 && stop != Tracee::Stop::ENDED) {
            guard.releasePage(written);
        }
        if (stop == Tracee::Stop::FAULT && process.faultAddress() == written &&
            ++writes == point.writes) {
            runLast(process, point);
            return true;
        }
        const bool goesOn = stop == Tracee::Stop::FAULT || stop == Tracee::Stop::SYSTEM_CALL;
        if (!goesOn || runOne(process) != Tracee::Stop::STEP) {
            return false;
        }
        if (stop == Tracee::Stop::SYSTEM_CALL) {
            guard.refresh();
        }
    }
}

bool reachBySystemCalls(Tracee& process, const DeathPoint& point) {
    for (std::uint32_t call = 1;; ++call) {
        if (process.runToSystemCall() != Tracee::Stop::SYSTEM_CALL) {
            return false;
        }
        const bool there = call == point.systemCalls;
        const Tracee::Stop behind =
            there ? process.runToSystemCall(BLOCKED) : process.runToSystemCall();
        if (there || behind != Tracee::Stop::SYSTEM_CALL) {
            return there;
        }
    }
}

}  // namespace

bool reach(Tracee& process, const DeathPoint& point, const std::string& folder) {
    if (point.arrivals <= MANY_ARRIVALS || !point.isChange()) {
        return reachByBreakpoint(process, point);
    }
    if (point.systemCalls != 0) {
        return reachBySystemCalls(process, point);
    }
    return reachByPage(process, point, folder);
}

std::string DeathPoint::describe() const {
    std::ostringstream text;
    Dl_info info{};
    if (dladdr(reinterpret_cast<void*>(address), &info) == 0) {
        text << "0x" << std::hex << address << std::dec;
    } else {
        text << info.dli_fname << " 0x" << std::hex
             << address - reinterpret_cast<Address>(info.dli_fbase) << std::dec;
    }
    if (info.dli_sname != nullptr) {
        int status = 0;
        const std::unique_ptr<char, void (*)(void*)> readable(
            abi::__cxa_demangle(info.dli_sname, nullptr, nullptr, &status), std::free);
        text << " (in or behind " << (status == 0 ? readable.get() : info.dli_sname) << ")";
    }
    text << ", arrival " << arrivals;
    if (!written.file.empty()) {
        text << ", write " << writes << " to " << written.file << " 0x" << std::hex
             << written.offset << std::dec;
    }
    if (rounds != 0) {
        text << ", round " << rounds;
    }
    if (systemCalls != 0) {
        text << ", system call " << systemCalls;
    }
    return text.str();
}

}  // namespace juntora::test
