// Reaching a running hub without signing on, so that a look from outside leaves no trace in it.
#pragma once

#include <functional>

namespace juntora {

/// Runs `request` with a hub in reach and returns what it does; without a hub, also one that goes
/// away meanwhile, complains and returns EXIT_CODE_NO_HUB.
int withHub(const std::function<int()>& request);

int complainOfNoHub();

}  // namespace juntora
