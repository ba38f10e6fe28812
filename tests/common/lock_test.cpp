// Locks on files: between objects of one process, between processes, and after deaths.
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>

#include "common/FileLock.h"
#include "platform/kernel/sync.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr char PATH[] = "/home/me/a.opj";

class Peer {
public:
    explicit Peer(const char* path = PATH) : process("common_lock_peer", {path}) {}

    int ask(const std::string& line) {
        process.writeLine(line);
        return answer();
    }
    int answer() { return std::stoi(process.readLine().value_or("-9999")); }

    ChildProcess process;
};

class LockTest : public TestDesktop {
protected:
    static int statusOf(const std::string& path = PATH) { return FileLock(path.c_str()).status(); }
};

TEST_F(LockTest, WithoutANameThereIsNothingToHold) {
    FileLock lock(nullptr);
    EXPECT_EQ(lock.status(), 0);
    EXPECT_EQ(lock.lock(nullptr, 0, 3), 8) << "the mode is looked at first";
    EXPECT_EQ(lock.lock(nullptr, 0, 1), 7);
    EXPECT_EQ(lock.setMode(9, 0), 7);
    EXPECT_EQ(lock.setMonitored(0), 0);
    EXPECT_EQ(lock.setMonitored(1), 7);
    EXPECT_EQ(lock.unlock(), 5);
    EXPECT_FALSE(lock.isHeldByOther('w') || lock.isHeldByOther('r') || lock.isMonitoredByOther());
    EXPECT_EQ(lock.lock(PATH, 0, 2), 0) << "a name given later will do";
    EXPECT_EQ(statusOf(), 8);
}

TEST_F(LockTest, FormsOfAPathMeetWhereTheyDifferInLettersAndSeparators) {
    FileLock lock("C:\\Dir/A\x01\t\xC4.OPJ");
    EXPECT_EQ(lock.lock(nullptr, 0, 2), 0);
    EXPECT_EQ(statusOf("c:/dir\\a\x01\t\xC4.opj"), 8);
    EXPECT_EQ(statusOf("c:/dir/a\x01\t\xE4.opj"), 0) << "bytes above 127 are no letters";
    EXPECT_EQ(statusOf("c:/dir//a\x01\t\xC4.opj"), 0);
    HANDLE semaphore = CreateSemaphoreA(1, 1, "c:/dir/a\x01\t\xC4.opjw");
    EXPECT_EQ(WaitForSingleObject(semaphore, 0), WAIT_TIMEOUT);
    CloseHandle(semaphore);
}

TEST_F(LockTest, PathsOfAnyLength) {
    for (const std::size_t length : {0, 1, 255, 259, 260, 510}) {
        const std::string path(length, 'P');
        FileLock lock(path.c_str());
        EXPECT_EQ(statusOf(path), 0);
        EXPECT_EQ(lock.lock(nullptr, 0, 1), 0) << length;
        EXPECT_EQ(statusOf(path), 2) << length;
    }
    for (const std::size_t length : {511, 520, 100'000}) {
        const std::string path(length, 'P');
        FileLock lock(nullptr);
        EXPECT_EQ(lock.lock(path.c_str(), 0, 2), 1) << length;
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
        EXPECT_EQ(lock.setMonitored(1), 1);
        EXPECT_EQ(lock.status(), 0);
    }
}

TEST_F(LockTest, ReadersShareAndAWriterIsAlone) {
    FileLock first(PATH);
    FileLock second(PATH);
    EXPECT_EQ(first.lock(nullptr, 0, 1), 0);
    EXPECT_EQ(first.lock("/else", 0, 1), 4);
    EXPECT_EQ(first.status(), 1) << "the name stayed too";
    EXPECT_EQ(second.lock(nullptr, 10'000, 2), 3) << "at once: only the gate is waited for";
    EXPECT_EQ(second.lock(nullptr, 0, 1), 0);
    EXPECT_EQ(first.status(), 3);
    EXPECT_TRUE(first.isHeldByOther('r'));
    EXPECT_FALSE(first.isHeldByOther('w'));
    EXPECT_EQ(statusOf(), 2);
    EXPECT_EQ(second.unlock(), 0);
    EXPECT_FALSE(first.isHeldByOther('r'));
    EXPECT_EQ(first.unlock(), 0);

    EXPECT_EQ(first.lock(nullptr, 0, 2), 0);
    EXPECT_EQ(second.lock(nullptr, 0, 1), 3);
    EXPECT_EQ(second.lock(nullptr, 20, 2), 3);
    EXPECT_EQ(first.status(), 4);
    EXPECT_EQ(second.status(), 8);
    EXPECT_TRUE(second.isHeldByOther('w'));
    EXPECT_FALSE(second.isHeldByOther('r') || second.isHeldByOther('m'));
}

TEST_F(LockTest, WatchersAreCountedApartAndGoWithTheLock) {
    FileLock lock(PATH);
    auto other = std::make_unique<FileLock>(PATH);
    EXPECT_EQ(lock.setMonitored(1), 0);
    EXPECT_EQ(lock.setMonitored(255), 0) << "it is on already";
    EXPECT_EQ(lock.status(), 16);
    EXPECT_EQ(other->status(), 32);
    EXPECT_EQ(other->setMonitored(1), 0);
    EXPECT_EQ(lock.status(), 48);
    EXPECT_EQ(lock.setMonitored(0), 0);
    EXPECT_EQ(lock.status(), 32);
    EXPECT_EQ(lock.unlock(), 5);
    EXPECT_EQ(other->lock(nullptr, 0, 1), 0);
    EXPECT_EQ(lock.status(), 34);
    EXPECT_EQ(other->unlock(), 0);
    EXPECT_EQ(other->status(), 0);
    EXPECT_EQ(other->lock(nullptr, 0, 2), 0);
    EXPECT_EQ(other->setMonitored(1), 0);
    other.reset();
    EXPECT_EQ(lock.status(), 0);
}

TEST_F(LockTest, AChangeOfModeLooksAtOneSemaphoreOnly) {
    FileLock lock(PATH);
    EXPECT_EQ(lock.setMode(9, 0), 5);
    EXPECT_EQ(lock.lock(nullptr, 0, 1), 0);
    EXPECT_EQ(lock.setMode(0, 0), 8);
    EXPECT_EQ(lock.setMonitored(1), 0);
    EXPECT_EQ(lock.setMode(1, 0), 0);
    EXPECT_EQ(lock.status(), 17);
    FileLock reader(PATH);
    EXPECT_EQ(reader.lock(nullptr, 0, 1), 0);
    EXPECT_EQ(lock.setMode(2, 0), 0) << "readers are not looked at";
    EXPECT_EQ(lock.status(), 4) << "the watch went with the old lock";
    EXPECT_EQ(reader.setMode(2, 20), 3);
    EXPECT_EQ(reader.unlock(), 5) << "nothing is held after a failure";
    EXPECT_EQ(lock.setMode(1, 0), 0);
    EXPECT_EQ(lock.status(), 1);
}

TEST_F(LockTest, WritersOfSeveralProcessesTakeTurns) {
    const std::string file = sandbox().temporaryFolder() + "/number";
    std::ofstream(file) << "1000";
    Peer peers[4];
    for (Peer& peer : peers) {
        peer.process.writeLine("count " + file + " 100");
    }
    for (Peer& peer : peers) {
        EXPECT_GE(peer.answer(), 0);
    }
    int number = 0;
    std::ifstream(file) >> number;
    EXPECT_EQ(number, 1400);
}

TEST_F(LockTest, AHolderThatLeavesOrDiesGivesBack) {
    FileLock lock(PATH);
    for (const bool dies : {false, true}) {
        for (const int mode : {LOCK_MODE_READ, LOCK_MODE_WRITE}) {
            Peer peer;
            EXPECT_EQ(peer.ask("lock " + std::to_string(mode)), 0);
            EXPECT_EQ(peer.ask("monitor"), 0);
            EXPECT_EQ(lock.status(), mode == LOCK_MODE_READ ? 34 : 40);
            dies ? peer.process.kill() : peer.process.closeInput();
            peer.process.wait();
            EXPECT_EQ(lock.lock(nullptr, 0, 2), 0);
            EXPECT_EQ(lock.unlock(), 0);
            EXPECT_EQ(lock.status(), 0);
        }
    }
}

TEST_F(LockTest, AWaiterGetsInOnceTheHolderHasGone) {
    for (const bool dies : {false, true}) {
        auto fastest = milliseconds::max();
        for (int moment = 0; moment < 5; ++moment) {
            Peer holder;
            Peer waiter;
            EXPECT_EQ(holder.ask("lock 2"), 0);
            EXPECT_EQ(waiter.ask("status"), 8);
            waiter.process.writeLine("lock 1 30000");
            EXPECT_FALSE(waiter.process.readLine(milliseconds(moment * 20)));
            dies ? holder.process.kill() : holder.process.closeInput();
            const auto gone = steady_clock::now();
            EXPECT_EQ(waiter.answer(), 0);
            fastest = std::min(
                fastest, std::chrono::duration_cast<milliseconds>(steady_clock::now() - gone));
        }
        EXPECT_LT(fastest, milliseconds(100));
    }
}

TEST_F(LockTest, AForkedChildHoldsNothingOfItsParents) {
    FileLock lock(PATH);
    EXPECT_EQ(lock.lock(nullptr, 0, 2), 0);
    const pid_t child = fork();
    if (child == 0) {
        const bool isSeen = FileLock(PATH).status() == 8;
        lock.unlock();
        _exit(isSeen && FileLock(PATH).status() == 8 ? 0 : 1);
    }
    int result = -1;
    waitpid(child, &result, 0);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(statusOf(), 8);
    EXPECT_EQ(lock.unlock(), 0);
}

/// The semaphores of PATH without a count of them: they outlive all who have one.
class OpenSemaphores {
public:
    OpenSemaphores() {
        for (const char* kind : {"w", "r", "m"}) {
            const LONG counts = *kind == 'w' ? 1 : 0x7fffffff;
            m_handles.push_back(
                CreateSemaphoreA(counts, counts, (PATH + std::string(kind)).c_str()));
        }
    }
    ~OpenSemaphores() { std::for_each(m_handles.begin(), m_handles.end(), CloseHandle); }
    OpenSemaphores(const OpenSemaphores&) = delete;
    OpenSemaphores& operator=(const OpenSemaphores&) = delete;

private:
    std::vector<HANDLE> m_handles;
};

TEST_F(LockTest, AThousandDeathsLeaveNothingHeld) {
    constexpr int ROUNDS = 125;
    constexpr int VICTIMS = 8;
    constexpr unsigned LATEST_MICROSECONDS = 3'000;
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
    for (int round = 0; round < ROUNDS && !HasFailure(); ++round) {
        const auto kept = round % 2 == 0 ? std::make_unique<OpenSemaphores>() : nullptr;
        std::vector<ChildProcess> victims;
        victims.reserve(VICTIMS);
        for (int i = 0; i < VICTIMS; ++i) {
            victims.emplace_back("common_lock_peer",
                                 std::vector<std::string>{PATH, std::to_string(random())});
        }
        for (ChildProcess& victim : victims) {
            EXPECT_EQ(victim.readLine(), "storming");
        }
        for (ChildProcess& victim : victims) {
            usleep(static_cast<useconds_t>(random() % LATEST_MICROSECONDS));
            victim.kill();
        }
        for (ChildProcess& victim : victims) {
            EXPECT_EQ(victim.wait(), 128 + SIGKILL);
        }
        FileLock writer(PATH);
        EXPECT_EQ(writer.lock(nullptr, 0, 2), 0) << "round " << round;
        EXPECT_EQ(writer.status(), 4);
        EXPECT_EQ(writer.unlock(), 0);
        EXPECT_EQ(writer.status(), 0) << "round " << round;
    }
}

}  // namespace
}  // namespace juntora::test
