// Many deaths of one operation, each followed by a look of those who live on.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/death/Recording.h"
#include "tests/death/Scenario.h"
#include "tests/death/Survivor.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {

/// How much of what could be tried is tried.
struct Extent {
    std::size_t changes;       ///< At most so many of the instructions that changed something.
    std::size_t others;        ///< At most so many of the rest.
    std::size_t firstDeaths;   ///< For two deaths: so many points at which the first one dies.
    std::size_t secondDeaths;  ///< And after each so many at which the second one does.
    std::size_t complaints;    ///< A run ends after so many.
    std::chrono::milliseconds patience;  ///< For one check.
    std::uint32_t seed;
};

struct Tally {
    std::size_t deaths = 0;
    /// Of the deaths at instructions that changed something: how many victims took another way and
    /// did not come to theirs. They died after the operation.
    std::size_t missed = 0;
    std::string lastMissed;
    std::vector<std::string> complaints;
};

class DeathRun {
public:
    DeathRun(Scenario& scenario, const Extent& extent);
    ~DeathRun();

    /// The victim dies at each chosen point; the survivor checks.
    Tally oneDeath();
    /// The victim dies at some points; after each, the mender dies at each chosen point of its
    /// mending; the survivor checks.
    Tally twoDeaths();

    /// What was recorded of the operation.
    const Recording& recording() const { return m_recording; }

private:
    void freshDesktop();
    std::unique_ptr<Tracee> startVictim();
    std::unique_ptr<Tracee> startMender();
    void begin(Tally& tally);
    Recording recordOperation();
    Recording recordMending(const DeathPoint& first);
    void die(Tracee& process, const DeathPoint& point, Tally& tally);
    void look(const std::string& occasion, Tally& tally);
    std::vector<DeathPoint> strided(const std::vector<DeathPoint>& points, std::size_t limit);
    std::string folder() const;

    Scenario& m_scenario;
    Extent m_extent;
    DesktopSandbox m_sandbox;
    Board* m_board;
    std::mt19937 m_random;
    std::string m_desktop;
    int m_desktops = 0;
    std::size_t m_deathsHere = 0;
    std::unique_ptr<Survivor> m_survivor;
    Recording m_recording;
};

}  // namespace juntora::test
