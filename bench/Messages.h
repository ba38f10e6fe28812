// The message service against what it is made of.
#pragma once

namespace juntora::bench {

/// Prints what the loading of a catalogue and the retrieval of a text cost.
void benchMessages();

}  // namespace juntora::bench
