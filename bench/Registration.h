// The registration of the suite against the bare starts of its servers.
#pragma once

namespace juntora::bench {

/// In a sandbox that has been entered, with no hub running. Prints what a run over all servers
/// costs, one in which all are in order, and the deletion of a tree of keys.
void benchRegistration();

}  // namespace juntora::bench
