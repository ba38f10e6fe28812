// What a program says to whoever debugs it.
#pragma once

namespace juntora {

/// Writes the text to standard error as it is, which is where a debugger of this machine shows what
/// its program says. What nobody takes is dropped. Null: nothing. Any thread may call.
void OutputDebugStringA(const char* text);

}  // namespace juntora
