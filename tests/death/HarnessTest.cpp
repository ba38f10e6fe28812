// The harness itself, on operations of which every instruction is known.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/death/DeathRun.h"

namespace juntora::test {
namespace {

constexpr std::size_t FILL = 100;

/// What the toys share: a record that is whole when both words are equal, and the journal of it.
struct Toy {
    std::uint64_t first;
    std::uint64_t second;
    std::uint64_t intended;
    std::uint64_t flag;
    char text[FILL];
};

constexpr Extent EVERYTHING{
    100'000, 100'000, 100'000, 100'000, 100'000, std::chrono::milliseconds(10'000), 1};

Toy* openToy() {
    const std::string runtime = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/juntora";
    const std::string folder = runtime + "/" + std::getenv("JUNTORA_DESKTOP");
    mkdir(runtime.c_str(), 0700);
    mkdir(folder.c_str(), 0700);
    const int file = open((folder + "/toy").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || ftruncate(file, sizeof(Toy)) != 0) {
        throw std::runtime_error("no file for the toy");
    }
    void* memory = mmap(nullptr, sizeof(Toy), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    return static_cast<Toy*>(memory);
}

void store(std::uint64_t& word, std::uint64_t value) {
    asm volatile("movq %1, %0" : "=m"(word) : "r"(value));
}

class ToyScenario : public Scenario {
public:
    std::string name() const override { return "toy"; }
    void settle() override { m_toy = openToy(); }
    void prepare() override { m_toy = openToy(); }
    void prepareMending() override { m_toy = openToy(); }
    void mend() override {}
    void check(Findings& findings) override {
        findings.expect(m_toy->first == m_toy->second, "half a record");
    }

protected:
    Toy* m_toy = nullptr;
};

/// Two words, one after the other, with nothing that could tell a half-done change.
class CarelessPair : public ToyScenario {
public:
    void operate() override {
        store(m_toy->first, board->round);
        store(m_toy->second, board->round);
    }
    void check(Findings& findings) override {
        ToyScenario::check(findings);
        m_toy->second = m_toy->first;
    }
};

/// A string instruction of 100 rounds, and a system call.
class Filling : public ToyScenario {
public:
    void operate() override {
        char* text = m_toy->text;
        std::size_t count = FILL;
        asm volatile("rep stosb" : "+D"(text), "+c"(count) : "a"('x') : "memory");
        asm volatile("syscall" : : "a"(39 /* getpid */) : "rcx", "r11", "memory");
    }
    void check(Findings& findings) override {
        const std::size_t filled = strnlen(m_toy->text, FILL);
        std::memset(m_toy->text, 0, FILL);
        findings.expect(filled == 0 || filled == FILL, std::to_string(filled) + " filled");
    }
};

/// Writes down what it is about to do; who comes next finishes it, but for the mender, who takes
/// the note away before it has.
class CarelessMending : public ToyScenario {
public:
    void operate() override {
        store(m_toy->intended, board->round);
        finish(false);
    }
    void mend() override { finish(true); }
    void check(Findings& findings) override {
        finish(false);
        ToyScenario::check(findings);
        m_toy->second = m_toy->first;
    }

private:
    void finish(bool carelessly) {
        const std::uint64_t intended = m_toy->intended;
        if (intended == 0) {
            return;
        }
        if (carelessly) {
            store(m_toy->intended, 0);
        }
        store(m_toy->first, intended);
        store(m_toy->second, intended);
        store(m_toy->intended, 0);
    }
};

/// Leaves a survivor that waits for ever.
class Hanging : public ToyScenario {
public:
    void operate() override { store(m_toy->flag, 1); }
    void check(Findings&) override {
        while (m_toy->flag != 0) {
            pause();
        }
    }
};

TEST(DeathHarness, findsTheOneInstructionBetweenTwoHalves) {
    CarelessPair scenario;
    DeathRun run(scenario, EVERYTHING);
    const Tally tally = run.oneDeath();
    EXPECT_EQ(run.recording().changes.size(), 2u);
    EXPECT_GT(tally.deaths, 2u);
    EXPECT_EQ(tally.missed, 0u);
    // After the first store, and after each instruction between the two.
    const std::string first = "after a death at " + run.recording().changes[0].describe();
    ASSERT_FALSE(tally.complaints.empty());
    EXPECT_EQ(tally.complaints[0], first + ": half a record");
    const std::string second = "after a death at " + run.recording().changes[1].describe();
    for (const std::string& complaint : tally.complaints) {
        EXPECT_EQ(complaint.find(second), std::string::npos) << complaint;
    }
}

TEST(DeathHarness, countsRoundsAndSystemCalls) {
    Filling scenario;
    DeathRun run(scenario, EVERYTHING);
    const Tally tally = run.oneDeath();
    const std::vector<DeathPoint>& changes = run.recording().changes;
    ASSERT_GT(changes.size(), 5u);
    EXPECT_EQ(changes[changes.size() - 2].rounds, FILL);
    EXPECT_EQ(changes.back().systemCalls, 1u);
    EXPECT_EQ(tally.missed, 0u);
    // Of all deaths in the string instruction the last alone leaves it filled.
    ASSERT_EQ(tally.complaints.size(), changes.size() - 2);
    EXPECT_NE(tally.complaints[1].find(", round 2: 2 filled"), std::string::npos);
}

TEST(DeathHarness, findsAMendingThatCannotBeMended) {
    CarelessMending scenario;
    DeathRun run(scenario, EVERYTHING);
    const Tally tally = run.twoDeaths();
    ASSERT_FALSE(tally.complaints.empty());
    EXPECT_NE(tally.complaints[0].find("and one in mending it"), std::string::npos);
}

TEST(DeathHarness, doesNotWaitForASurvivorThatHangs) {
    Hanging scenario;
    Extent impatient = EVERYTHING;
    impatient.complaints = 1;
    impatient.patience = std::chrono::milliseconds(50);
    DeathRun run(scenario, impatient);
    const Tally tally = run.oneDeath();
    ASSERT_FALSE(tally.complaints.empty());
    EXPECT_NE(tally.complaints[0].find("no answer after 50 ms"), std::string::npos);
}

}  // namespace
}  // namespace juntora::test
