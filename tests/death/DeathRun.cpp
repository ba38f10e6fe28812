#include "tests/death/DeathRun.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace juntora::test {
namespace {

constexpr std::size_t DEATHS_A_DESKTOP = 1'000;

}  // namespace

DeathRun::DeathRun(Scenario& scenario, const Extent& extent)
    : m_scenario(scenario), m_extent(extent), m_random(extent.seed) {
    void* memory =
        mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        throw std::runtime_error("no memory for the board");
    }
    m_board = static_cast<Board*>(memory);
    m_scenario.board = m_board;
    m_sandbox.enter();
}

DeathRun::~DeathRun() {
    m_survivor.reset();
    munmap(m_board, sizeof(Board));
}

std::string DeathRun::folder() const { return m_sandbox.runtimeFolder() + "/juntora/" + m_desktop; }

void DeathRun::freshDesktop() {
    m_survivor.reset();
    std::error_code ignored;
    if (!m_desktop.empty()) {
        std::filesystem::remove_all(folder(), ignored);
    }
    m_desktop = "death-" + std::to_string(++m_desktops);
    setenv("JUNTORA_DESKTOP", m_desktop.c_str(), 1);
    m_deathsHere = 0;
    m_survivor = std::make_unique<Survivor>(m_scenario);
}

std::unique_ptr<Tracee> DeathRun::startVictim() {
    for (std::atomic<std::int64_t>& note : m_board->notes) {
        note = 0;
    }
    m_board->victimWindow = 0;
    m_board->diedAt = 0;
    ++m_board->round;
    auto victim = std::make_unique<Tracee>([this] {
        m_scenario.prepare();
        mark(Mark::BEGIN);
        m_scenario.operate();
        mark(Mark::END);
    });
    m_board->victim = victim->pid();
    if (victim->lastMark() == Mark::READY) {
        m_survivor->attend();
    }
    victim->runTo(Mark::BEGIN);
    return victim;
}

std::unique_ptr<Tracee> DeathRun::startMender() {
    auto mender = std::make_unique<Tracee>([this] {
        m_scenario.prepareMending();
        mark(Mark::BEGIN);
        m_scenario.mend();
        mark(Mark::END);
    });
    m_board->mender = mender->pid();
    return mender;
}

void DeathRun::die(Tracee& process, const DeathPoint& point, Tally& tally) {
    if (!reach(process, point, folder()) && point.isChange()) {
        ++tally.missed;
        tally.lastMissed = point.describe();
    }
    process.kill();
    m_board->diedAt = monotonicNanoseconds();
    ++tally.deaths;
    ++m_deathsHere;
}

void DeathRun::look(const std::string& occasion, Tally& tally) {
    const std::string complaint = m_survivor->check(m_extent.patience);
    if (!complaint.empty()) {
        tally.complaints.push_back(occasion + ": " + complaint);
    }
    if (!complaint.empty() || m_deathsHere >= DEATHS_A_DESKTOP) {
        freshDesktop();
    }
}

Recording DeathRun::recordOperation() {
    const std::unique_ptr<Tracee> victim = startVictim();
    Recording recording = record(*victim, folder());
    victim->kill();
    m_board->diedAt = monotonicNanoseconds();
    return recording;
}

Recording DeathRun::recordMending(const DeathPoint& first) {
    Tally unused;
    const std::unique_ptr<Tracee> mender = startMender();
    die(*startVictim(), first, unused);
    Recording recording = record(*mender, folder());
    mender->kill();
    return recording;
}

std::vector<DeathPoint> DeathRun::strided(const std::vector<DeathPoint>& points,
                                          std::size_t limit) {
    if (points.size() <= limit) {
        return points;
    }
    std::vector<DeathPoint> chosen;
    const double stride = static_cast<double>(points.size()) / static_cast<double>(limit);
    const double offset = std::uniform_real_distribution<double>(0, stride)(m_random);
    for (std::size_t i = 0; i < limit; ++i) {
        const auto index = static_cast<std::size_t>(offset + static_cast<double>(i) * stride);
        chosen.push_back(points[std::min(index, points.size() - 1)]);
    }
    return chosen;
}

/// Runs the whole operation twice, since the first time of all does more than those that follow.
void DeathRun::begin(Tally& tally) {
    freshDesktop();
    startVictim()->run();
    m_board->diedAt = monotonicNanoseconds();
    look("after the whole operation", tally);
    m_recording = recordOperation();
    look("after the whole operation, recorded", tally);
}

Tally DeathRun::oneDeath() {
    Tally tally;
    begin(tally);
    std::vector<DeathPoint> points = strided(m_recording.changes, m_extent.changes);
    const std::vector<DeathPoint> others = strided(m_recording.others, m_extent.others);
    points.insert(points.end(), others.begin(), others.end());
    for (const DeathPoint& point : points) {
        if (tally.complaints.size() >= m_extent.complaints) {
            break;
        }
        const std::unique_ptr<Tracee> victim = startVictim();
        die(*victim, point, tally);
        look("after a death at " + point.describe(), tally);
    }
    return tally;
}

Tally DeathRun::twoDeaths() {
    Tally tally;
    begin(tally);
    for (const DeathPoint& first : strided(m_recording.changes, m_extent.firstDeaths)) {
        const Recording mending = recordMending(first);
        look("after mending, recorded, a death at " + first.describe(), tally);
        for (const DeathPoint& second : strided(mending.changes, m_extent.secondDeaths)) {
            if (tally.complaints.size() >= m_extent.complaints) {
                return tally;
            }
            const std::unique_ptr<Tracee> mender = startMender();
            const std::unique_ptr<Tracee> victim = startVictim();
            die(*victim, first, tally);
            die(*mender, second, tally);
            look("after a death at " + first.describe() + " and one in mending it at " +
                     second.describe(),
                 tally);
        }
    }
    return tally;
}

}  // namespace juntora::test
