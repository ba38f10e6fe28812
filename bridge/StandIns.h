// Tool objects that reach their tools as automation servers.
#pragma once

#include <memory>

#include "bridge/ToolObjects.h"

namespace juntora {

// Each starts its tool if need be; null where that cannot be had. A call that fails is nobody's
// concern from then on, but for start(), which answers -1.
std::unique_ptr<wVoltaraUserInterface> makeVoltaraUserStandIn();
std::unique_ptr<wSimObjInterface> makeSimObjStandIn();
std::unique_ptr<wTunaraInterface> makeTunaraStandIn();
std::unique_ptr<wSketchelModelarInterface> makeModelarStandIn();
std::unique_ptr<wSketchelWavendInterface> makeWavendStandIn();

}  // namespace juntora
