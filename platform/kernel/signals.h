// Signals of the system, for a program that lives in a message loop.
#pragma once

namespace juntora {

/// From now on an interrupt, a request to terminate or the loss of the terminal ends the calling
/// thread's message loop as PostQuitMessage(0) does, so that the program can leave in order; those
/// that were being ignored go on being so. The same signal a second time ends the process at once,
/// in case the loop is never reached. Writing to a pipe that nobody reads fails and ends nobody.
/// Programs that this one starts have none of it. False when the thread has no queue.
bool QuitOnSignals();

}  // namespace juntora
