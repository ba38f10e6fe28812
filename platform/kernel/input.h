// Standard input, for a program that lives in a message loop.
#pragma once

#include <cstddef>

namespace juntora {

/// Takes some of the input; a count of 0 is its end, and comes once.
using InputTaker = void (*)(const char* bytes, std::size_t count, void* context);

/// Hands what comes at standard input to `take`, from the calling thread's message loop and never
/// waiting for more, be it a terminal, a pipe or a file: 64 KiB at most at a time, with a look at
/// the queue in between. An input that cannot be read has ended. False when the thread has no
/// queue.
bool WatchStandardInput(InputTaker take, void* context);
void UnwatchStandardInput();

}  // namespace juntora
