// As much of the processor's instructions as stepping needs to know.
#pragma once

#include <cstdint>

#include "tests/death/Tracee.h"

namespace juntora::test {

enum class InstructionKind {
    ORDINARY,
    SYSTEM_CALL,
    REPEATING,  ///< A string instruction, which would be stepped round by round.
};

struct Instruction {
    InstructionKind kind = InstructionKind::ORDINARY;
    Address next = 0;  ///< The address behind it; known for repeating ones alone.
};

/// The instruction at an address of this process's code, and so of any tracee's.
Instruction instructionAt(Address address);

/// Has a tracee that stands at a repeating instruction run what is left of its rounds at once.
Tracee::Stop runPast(Tracee& tracee, const Instruction& instruction);

/// The same with this number of rounds in place of those that are left. For a tracee that is killed
/// there: it would go on as if that had been all.
void runRounds(Tracee& tracee, const Instruction& instruction, std::uint64_t rounds);

}  // namespace juntora::test
