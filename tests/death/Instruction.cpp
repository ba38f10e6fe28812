#include "tests/death/Instruction.h"

namespace juntora::test {

Instruction instructionAt(Address address) {
    const auto* byte = reinterpret_cast<const unsigned char*>(address);
    if (byte[0] == 0x0F && byte[1] == 0x05) {
        return {InstructionKind::SYSTEM_CALL, 0};
    }
    if (byte[0] != 0xF2 && byte[0] != 0xF3) {
        return {};
    }
    do {
        ++byte;
    } while (*byte == 0x66 || (*byte & 0xF0) == 0x40);  // operand size, wide registers
    const bool isString = (*byte >= 0xA4 && *byte <= 0xA7) || (*byte >= 0xAA && *byte <= 0xAF);
    if (!isString) {
        return {};
    }
    return {InstructionKind::REPEATING, reinterpret_cast<Address>(byte + 1)};
}

Tracee::Stop runPast(Tracee& tracee, const Instruction& instruction) {
    tracee.setBreakpoint(instruction.next);
    const Tracee::Stop stop = tracee.run();
    tracee.clearBreakpoint();
    return stop == Tracee::Stop::BREAKPOINT ? Tracee::Stop::STEP : stop;
}

void runRounds(Tracee& tracee, const Instruction& instruction, std::uint64_t rounds) {
    user_regs_struct values = tracee.registers();
    values.rcx = rounds;
    tracee.setRegisters(values);
    runPast(tracee, instruction);
}

}  // namespace juntora::test
