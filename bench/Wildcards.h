// Patterns against the system's own matcher.
#pragma once

namespace juntora::bench {

/// Prints what WildcardMatch costs of what fnmatch does, without regard to case.
void benchWildcards();

}  // namespace juntora::bench
