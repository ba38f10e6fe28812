// Prints for whoever debugs a program.
#pragma once

namespace juntora {

/// Prints as printf does, to where the environment's DEBUGPRINT says, without regard to case:
///   stdout        standard output, flushed at once
///   debugwindow   OutputDebugStringA (platform/kernel/debugOutput.h), cut to 1,023 bytes
///   other         the end of that file, in one piece; it is opened for each call
/// Without the word, or where that file can't be opened, the end of "z80.dbg" in the current
/// directory. What can't be written anywhere is dropped. Any thread may call.
void DebugPrint(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace juntora
