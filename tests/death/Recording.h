// What an operation does, instruction by instruction.
#pragma once

#include <string>
#include <vector>

#include "tests/death/DeathPoint.h"
#include "tests/death/Tracee.h"

namespace juntora::test {

struct Recording {
    /// After each instruction that wrote to shared memory, and after each system call.
    std::vector<DeathPoint> changes;
    /// After others; of one that is come to again and again, the first times and then ever fewer.
    std::vector<DeathPoint> others;
};

/// Goes through what a tracee that is at Mark::BEGIN does until Mark::END or its exit, at some 40
/// us an instruction. Where it goes round a loop the changes alone are gone through, after the
/// first rounds. Changes are those to shared mappings of files below `folder`.
Recording record(Tracee& tracee, const std::string& folder);

}  // namespace juntora::test
