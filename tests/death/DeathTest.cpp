// Death at any instruction: real processes are killed in the middle of what they do on a desktop,
// and others go on. A sample of all deaths, or with JUNTORA_ALL_DEATHS every instruction that
// changes something.
#include <algorithm>
#include <cstdio>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/death/DeathRun.h"
#include "tests/death/scenarios.h"

namespace juntora::test {
namespace {

#ifdef JUNTORA_ALL_DEATHS
constexpr bool ALL_DEATHS = true;
#else
constexpr bool ALL_DEATHS = false;
#endif

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool IS_SLOW = true;
#else
constexpr bool IS_SLOW = false;
#endif

/// Of the mendings the sample takes these alone: one of each kind.
const std::vector<std::string> MENDED_IN_SAMPLE = {"openingTheDesktop",   "creatingAWindow",
                                                   "sendingText",         "answering",
                                                   "holdingASharedMutex", "holdingASemaphore"};

Extent extent() {
    const auto seed = static_cast<std::uint32_t>(::testing::UnitTest::GetInstance()->random_seed());
    Extent extent{60, 20, 1, 20, 5, Milliseconds(2'000), seed};
    if (ALL_DEATHS) {
        extent = {100'000, 300, 6, 120, 5, Milliseconds(2'000), seed};
    } else if (IS_SLOW) {
        extent = {15, 5, 1, 10, 5, Milliseconds(2'000), seed};
    }
    if (IS_SLOW) {
        extent.patience = Milliseconds(10'000);
    }
    return extent;
}

class DeathCase : public ::testing::TestWithParam<ScenarioMaker> {
protected:
    static void judge(Tally (DeathRun::*deaths)()) {
        const std::unique_ptr<Scenario> scenario = GetParam()();
        DeathRun run(*scenario, extent());
        const Tally tally = (run.*deaths)();
        std::printf("%zu kills, %zu of them at another place\n", tally.deaths, tally.missed);
        for (const std::string& complaint : tally.complaints) {
            ADD_FAILURE() << complaint;
        }
        EXPECT_GT(tally.deaths, 0u);
        // The victims are to die in the operation. Another way through it is no fault: who spins
        // and who sleeps is a matter of time, and on a busy machine half of them take one.
        EXPECT_LE(tally.missed * 4, tally.deaths * 3)
            << "too many missed the place of their death, such as " << tally.lastMissed;
    }
};

using OneDeath = DeathCase;
using TwoDeaths = DeathCase;

TEST_P(OneDeath, In) { judge(&DeathRun::oneDeath); }
TEST_P(TwoDeaths, In) { judge(&DeathRun::twoDeaths); }

Scenarios mended() {
    Scenarios chosen;
    std::copy_if(scenarios().begin(), scenarios().end(), std::back_inserter(chosen),
                 [](const ScenarioMaker& make) {
                     return ALL_DEATHS || std::count(MENDED_IN_SAMPLE.begin(),
                                                     MENDED_IN_SAMPLE.end(), make()->name()) != 0;
                 });
    return chosen;
}

constexpr auto nameOf = [](const auto& info) { return info.param()->name(); };

INSTANTIATE_TEST_SUITE_P(Death, OneDeath, ::testing::ValuesIn(scenarios()), nameOf);
INSTANTIATE_TEST_SUITE_P(Death, TwoDeaths, ::testing::ValuesIn(mended()), nameOf);

}  // namespace
}  // namespace juntora::test
