#include "tests/death/Marker.h"

// An address of its own for the trap, so that the tracer tells it from a breakpoint of its own.
asm(R"(
    .text
    .globl juntora_death_mark, juntora_death_marked, juntora_death_system_call
    .type juntora_death_mark, @function
juntora_death_mark:
    int3
juntora_death_marked:
    ret
    .size juntora_death_mark, . - juntora_death_mark
juntora_death_system_call:
    syscall
    int3
)");

extern "C" void juntora_death_mark(long place);

namespace juntora::test {

void mark(Mark place) { juntora_death_mark(static_cast<long>(place)); }

}  // namespace juntora::test
