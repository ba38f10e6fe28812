// Reads of settings against another reader of such files.
#pragma once

namespace juntora::bench {

/// In a sandbox that has been entered. Prints what a read of one key costs, and what a list of
/// folders does by its length.
void benchSettings();

}  // namespace juntora::bench
