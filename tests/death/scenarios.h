// All operations in which processes die here.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "tests/death/Scenario.h"

namespace juntora::test {

using Scenarios = std::vector<std::function<std::unique_ptr<Scenario>()>>;

void addDesktopScenarios(Scenarios& all);
void addWindowScenarios(Scenarios& all);
void addMessageScenarios(Scenarios& all);
void addAnswerScenarios(Scenarios& all);
void addObjectScenarios(Scenarios& all);
void addSlotScenarios(Scenarios& all);
void addHubScenarios(Scenarios& all);

}  // namespace juntora::test
