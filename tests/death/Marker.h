// The places at which a traced process tells its tracer how far it has come.
#pragma once

namespace juntora::test {

enum class Mark : long {
    READY = 1,  ///< The survivor may begin what it does beside the operation.
    BEGIN = 2,  ///< The operation starts with the next instruction.
    END = 3,    ///< The operation is over.
};

/// Stops the calling process for its tracer. In a process that is not traced, it ends it.
void mark(Mark place);

/// Where a process that is stopped in mark() stands.
extern "C" char juntora_death_marked[];

/// A system call instruction that a tracer may have its tracee run.
extern "C" char juntora_death_system_call[];

}  // namespace juntora::test
