#include "hub/Bridge.h"

namespace juntora {
namespace {

BridgeMaker bridgeMaker = nullptr;

}  // namespace

void setBridgeMaker(BridgeMaker maker) { bridgeMaker = maker; }

std::unique_ptr<Bridge> makeBridge(ipcDes* hub) { return bridgeMaker ? bridgeMaker(hub) : nullptr; }

}  // namespace juntora
