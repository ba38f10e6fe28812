// Death at any instruction: real processes are killed in the middle of what they do on a desktop,
// and others go on. A sample of all deaths, or with JUNTORA_ALL_DEATHS every instruction that
// changes something.
#include <algorithm>
#include <cstdio>
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

class DeathCase : public ::testing::Test {
public:
    DeathCase(std::unique_ptr<Scenario> scenario, Tally (DeathRun::*deaths)())
        : m_scenario(std::move(scenario)), m_deaths(deaths) {}

    void TestBody() override {
        DeathRun run(*m_scenario, extent());
        const Tally tally = (run.*m_deaths)();
        std::printf("%zu kills, %zu of them at another place\n", tally.deaths, tally.missed);
        for (const std::string& complaint : tally.complaints) {
            ADD_FAILURE() << complaint;
        }
        EXPECT_GT(tally.deaths, 0u);
        // The victims are to die in the operation; another way through it, now and then, is no
        // fault.
        EXPECT_LE(tally.missed * 5, tally.deaths)
            << "too many missed the place of their death, such as " << tally.lastMissed;
    }

private:
    std::unique_ptr<Scenario> m_scenario;
    Tally (DeathRun::*m_deaths)();
};

void registerCase(const char* suite, const Scenarios::value_type& make,
                  Tally (DeathRun::*deaths)()) {
    ::testing::RegisterTest(suite, make()->name().c_str(), nullptr, nullptr, __FILE__, __LINE__,
                            [=]() -> ::testing::Test* { return new DeathCase(make(), deaths); });
}

void registerAll() {
    for (const Scenarios::value_type& make : scenarios()) {
        registerCase("OneDeath", make, &DeathRun::oneDeath);
        const bool inSample = std::find(MENDED_IN_SAMPLE.begin(), MENDED_IN_SAMPLE.end(),
                                        make()->name()) != MENDED_IN_SAMPLE.end();
        if (ALL_DEATHS || inSample) {
            registerCase("TwoDeaths", make, &DeathRun::twoDeaths);
        }
    }
}

}  // namespace
}  // namespace juntora::test

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    juntora::test::registerAll();
    return RUN_ALL_TESTS();
}
