// Which core a thread runs on. Two processes that call each other back to back are fastest on two
// cores, awake; where the machine does not say which cores share a cache the kernel leaves both on
// one core for as long as they only wake each other, however idle the next one is.
#pragma once

#include <cstdint>

namespace juntora::desktop {

/// The calling thread's core; a few nanoseconds.
std::uint32_t currentCore();

/// Moves the calling thread to another core of those that it may run on, if there is one, and
/// leaves it as free as it was. Costs some tens of microseconds.
void leaveCore(std::uint32_t core);

}  // namespace juntora::desktop
