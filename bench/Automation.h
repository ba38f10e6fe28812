// Calls of the hub's automation object against calls of a plain service on the same bus.
#pragma once

#include "bench/Bus.h"

namespace juntora::bench {

/// With a hub on the bus's session. Prints what a call of a member costs.
void benchAutomation(Bus& bus);

}  // namespace juntora::bench
