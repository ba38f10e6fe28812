// At which instruction a process dies, in a way that finds it again in another process.
#pragma once

#include <cstdint>
#include <string>

#include "tests/death/Tracee.h"
#include "tests/death/WriteGuard.h"

namespace juntora::test {

/// The moment right after an instruction, counted from the operation's beginning.
struct DeathPoint {
    Address address = 0;  ///< Of the instruction.
    std::uint32_t arrivals =
        0;                     ///< How often it was come to; in a loop, not all times are counted.
    std::uint64_t rounds = 0;  ///< Of a repeating instruction: so many; 0 for any other.
    Place written;             ///< Where in shared memory it wrote first.
    std::uint32_t writes = 0;  ///< How often something was written there.
    std::uint32_t systemCalls = 0;  ///< Of a system call: how many there were.

    bool isChange() const { return writes != 0 || systemCalls != 0; }
    /// Program, offset and nearest function, as a debugger takes them.
    std::string describe() const;
};

/// Runs a process that is at Mark::BEGIN to right after the point, by the cheapest of the roads
/// that lead there; all that is left to do with it then is to kill it. False when it came to the
/// end of its operation, or hung, without getting there. `folder` is that of the shared files.
bool reach(Tracee& process, const DeathPoint& point, const std::string& folder);

}  // namespace juntora::test
