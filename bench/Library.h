// The value classes of the common library against what the standard library offers for the same.
#pragma once

namespace juntora::bench {

/// Prints what a path and a text of tokens cost.
void benchLibrary();

}  // namespace juntora::bench
