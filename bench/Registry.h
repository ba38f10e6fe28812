// Reads and writes of the registry against the store that it is made of.
#pragma once

namespace juntora::bench {

/// In a sandbox that has been entered. Prints what a read of a value costs, and what a write does.
void benchRegistry();

}  // namespace juntora::bench
