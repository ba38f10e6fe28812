// What a program says to whoever debugs it.
#pragma once

#include <string_view>

namespace juntora {

/// Writes the text to standard error as it is, which is where a debugger of this machine shows what
/// its program says. What nobody takes is dropped. Null: nothing. Any thread may call.
void OutputDebugStringA(const char* text);

/// Writes the text to standard output, behind what this process has printed so far. A reader that
/// has gone does not end this process; one that does not read is waited for.
void PrintToOutput(std::string_view text);

}  // namespace juntora
