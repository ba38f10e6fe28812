// Named objects between real processes.
#include <sys/wait.h>
#include <unistd.h>

#include <memory>

#include "platform/kernel/sync.h"
#include "tests/platform/Peer.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

class ObjectTest : public TestDesktop {};

TEST_F(ObjectTest, AMutexLivesAsLongAsSomebodyHoldsIt) {
    Peer peer;
    EXPECT_EQ(0, peer.ask("mutex Planchet"));
    HANDLE mutex = CreateMutexA(false, "Planchet");
    EXPECT_EQ(ERROR_ALREADY_EXISTS, GetLastError());
    CloseHandle(mutex);
    EXPECT_EQ(nullptr, CreateSemaphoreA(1, 1, "Planchet")) << "a name belongs to one kind";
    peer.process.kill();
    peer.process.wait();
    mutex = CreateMutexA(false, "Planchet");
    EXPECT_EQ(ERROR_SUCCESS, GetLastError()) << "its last holder has died";
    CloseHandle(mutex);
    EXPECT_FALSE(CloseHandle(mutex));
    EXPECT_EQ(ERROR_INVALID_HANDLE, GetLastError());
}

TEST_F(ObjectTest, AMutexKeepsOthersOutAndTellsOfADeadOwner) {
    Peer peer;
    HANDLE mutex = CreateMutexA(true, "m");
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(mutex, 0)) << "its owner may take it again";
    peer.ask("mutex m");
    EXPECT_EQ(WAIT_TIMEOUT, peer.ask("wait m 20"));
    EXPECT_EQ(0, peer.ask("release m"));
    EXPECT_TRUE(ReleaseMutex(mutex));
    EXPECT_EQ(WAIT_TIMEOUT, peer.ask("wait m 0")) << "taken twice, released once";
    EXPECT_TRUE(ReleaseMutex(mutex));
    EXPECT_FALSE(ReleaseMutex(mutex));
    EXPECT_EQ(ERROR_NOT_OWNER, GetLastError());
    EXPECT_EQ(WAIT_OBJECT_0, peer.ask("wait m 0"));
    EXPECT_EQ(WAIT_TIMEOUT, WaitForSingleObject(mutex, 0));
    peer.process.kill();
    EXPECT_EQ(WAIT_ABANDONED, WaitForSingleObject(mutex, 10'000));
    ReleaseMutex(mutex);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(mutex, 0));
    CloseHandle(mutex);
}

TEST_F(ObjectTest, ADeadProcessGivesItsSemaphoreCountsBack) {
    Peer peer;
    HANDLE semaphore = CreateSemaphoreA(3, 3, "counts");
    peer.ask("semaphore counts 9 9");
    EXPECT_EQ(WAIT_OBJECT_0, peer.ask("wait counts 0"));
    EXPECT_EQ(WAIT_OBJECT_0, peer.ask("wait counts 0"));
    EXPECT_EQ(1, peer.ask("release-count counts"));
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(semaphore, 0));
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(semaphore, 0));
    EXPECT_EQ(WAIT_TIMEOUT, WaitForSingleObject(semaphore, 20));
    peer.process.kill();
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(semaphore, 10'000));
    LONG previous = -1;
    EXPECT_TRUE(ReleaseSemaphore(semaphore, 3, &previous));
    EXPECT_EQ(0, previous);
    EXPECT_FALSE(ReleaseSemaphore(semaphore, 1, nullptr)) << "beyond the maximum";
    CloseHandle(semaphore);
    EXPECT_EQ(nullptr, CreateSemaphoreA(2, 1, "more than it may hold"));
}

TEST_F(ObjectTest, TheDeadAreCountedNowhere) {
    auto peer = std::make_unique<Peer>();
    HANDLE semaphore = CreateSemaphoreA(4, 4, "counts");
    peer->ask("semaphore counts 9 9");
    EXPECT_EQ(WAIT_OBJECT_0, peer->ask("wait counts 0"));
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(semaphore, 0));
    peer->process.kill();
    peer->process.wait();
    LONG previous = -1;
    EXPECT_TRUE(ReleaseSemaphore(semaphore, 1, &previous));
    EXPECT_EQ(3, previous);
    EXPECT_FALSE(ReleaseSemaphore(semaphore, 1, &previous)) << "all four are back";

    peer = std::make_unique<Peer>();
    peer->ask("semaphore counts 9 9");
    EXPECT_EQ(WAIT_OBJECT_0, peer->ask("wait counts 0"));
    EXPECT_TRUE(ReleaseSemaphore(semaphore, 1, nullptr)) << "what another has taken";
    peer->process.kill();
    peer->process.wait();
    CloseHandle(CreateSemaphoreA(4, 4, "counts"));
    EXPECT_FALSE(ReleaseSemaphore(semaphore, 1, nullptr)) << "it was given back already";
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(semaphore, 0));
    EXPECT_TRUE(ReleaseSemaphore(semaphore, 1, &previous));
    EXPECT_EQ(3, previous);
    CloseHandle(semaphore);
}

TEST_F(ObjectTest, WhatTheDeadHeldMakesRoom) {
    HANDLE kept = CreateSemaphoreA(1, 1, "kept");
    // Together more than the desktop holds.
    for (int maker = 0; maker < 10; ++maker) {
        const pid_t process = fork();
        if (process == 0) {
            int count = 0;
            const std::string name = "object " + std::to_string(maker) + " ";
            while (count < 4'000 && CreateMutexA(false, (name + std::to_string(count)).c_str())) {
                ++count;
            }
            _exit(count == 4'000 ? 0 : 1);
        }
        int result = -1;
        waitpid(process, &result, 0);
        EXPECT_EQ(0, result) << maker;
    }
    CloseHandle(CreateSemaphoreA(1, 1, "kept"));
    EXPECT_EQ(ERROR_ALREADY_EXISTS, GetLastError());
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(kept, 0));
    CloseHandle(kept);
}

TEST_F(ObjectTest, AMappingIsSharedAndZeroForItsNextMaker) {
    Peer peer;
    EXPECT_EQ(0, peer.ask("mapping block 65600"));
    EXPECT_EQ(0, peer.ask("poke block 4711"));
    HANDLE mapping = CreateFileMappingA(65'600, "block");
    EXPECT_EQ(ERROR_ALREADY_EXISTS, GetLastError());
    auto* view = static_cast<int*>(MapViewOfFile(mapping, 65'600));
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(4711, *view);
    *view = 12;
    EXPECT_EQ(12, peer.ask("peek block"));
    EXPECT_TRUE(UnmapViewOfFile(view));
    EXPECT_FALSE(UnmapViewOfFile(view));
    CloseHandle(mapping);
    EXPECT_EQ(12, peer.ask("peek block"));
    peer.process.kill();
    peer.process.wait();
    mapping = CreateFileMappingA(65'600, "block");
    EXPECT_EQ(ERROR_SUCCESS, GetLastError());
    view = static_cast<int*>(MapViewOfFile(mapping, 65'600));
    ASSERT_NE(nullptr, view);
    EXPECT_EQ(0, *view);
    EXPECT_EQ(nullptr, MapViewOfFile(mapping, 65'601)) << "its last byte could not be touched";
    EXPECT_EQ(ERROR_ACCESS_DENIED, GetLastError());
    UnmapViewOfFile(view);
    CloseHandle(mapping);
}

TEST_F(ObjectTest, UnfitNamesAndHandlesAreRefused) {
    EXPECT_EQ(nullptr, CreateMutexA(false, ""));
    EXPECT_EQ(nullptr, CreateMutexA(false, nullptr));
    EXPECT_EQ(nullptr, CreateMutexA(false, std::string(512, 'n').c_str()));
    EXPECT_EQ(WAIT_FAILED, WaitForSingleObject(nullptr, 0));
    EXPECT_EQ(WAIT_FAILED, WaitForSingleObject(reinterpret_cast<HANDLE>(0xFFFFFFFC), 0));
    EXPECT_EQ(nullptr, MapViewOfFile(nullptr, 1));
}

}  // namespace
}  // namespace juntora::test
