// The block of slots.
#include <atomic>
#include <chrono>
#include <thread>

#include "tests/ipc/IpcFixture.h"

namespace juntora::test {
namespace {

class SlotTest : public IpcTest {
protected:
    void SetUp() override { attach(); }

    static void takeAll() {
        while (freeSlots() > 0) {
            ASSERT_NE(ipcMemAlloc(1024), nullptr);
        }
    }
};

TEST_F(SlotTest, TheLowestFreeSlotIsTakenFirst) {
    std::vector<IpcMessage*> slots;
    for (int i = 0; i < 64; ++i) {
        slots.push_back(ipcMemAlloc(1024));
        ASSERT_EQ(ipcMemOffset(slots.back()), 64 + 1024 * i);
        ASSERT_EQ(ipcMemAddress(64 + 1024 * i), slots.back());
    }
    ipcMemFree(slots[40]);
    ipcMemFree(slots[7]);
    EXPECT_EQ(ipcMemAlloc(1), slots[7]);
    EXPECT_EQ(ipcMemAlloc(1), slots[40]);
}

TEST_F(SlotTest, The65thIsRefusedAfterItsPasses) {
    takeAll();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ipcMemAlloc(1024), nullptr);
    const auto first = std::chrono::steady_clock::now() - start;
    EXPECT_GE(first, std::chrono::milliseconds(100));
    // The block lives on; one that has come free is had at once.
    ipcMemFree(ipcMemAddress(64 + 1024 * 63));
    EXPECT_EQ(ipcMemOffset(ipcMemAlloc(1024)), 64 + 1024 * 63);
}

TEST_F(SlotTest, AFullBlockIsWaitedForSoThatOthersCanGiveBack) {
    takeAll();
    int rounds = 0;
    // A round in which the other one came late, on a machine with other things to do, says nothing.
    for (int attempt = 0; attempt < 100 && rounds < 5; ++attempt) {
        std::atomic<bool> isReady = false;
        std::atomic<bool> isLate = false;
        const auto start = std::chrono::steady_clock::now();
        // It needs the mutex, which the passes would keep from it.
        std::thread other([&] {
            isReady = true;
            isReady.notify_one();
            isLate = std::chrono::steady_clock::now() - start > std::chrono::milliseconds(15);
            ipcMemFree(ipcMemAddress(64 + 1024 * 5));
        });
        isReady.wait(false);
        IpcMessage* slot = ipcMemAlloc(1024);
        other.join();
        if (slot == nullptr) {
            ASSERT_TRUE(isLate);
            ASSERT_EQ(ipcMemOffset(ipcMemAlloc(1024)), 64 + 1024 * 5);
            continue;
        }
        ASSERT_EQ(ipcMemOffset(slot), 64 + 1024 * 5);
        ++rounds;
    }
    EXPECT_EQ(rounds, 5);
}

TEST_F(SlotTest, OnlySlotsAreTakenForSlots) {
    ASSERT_NE(ipcMemAlloc(1024), nullptr);
    for (const LPARAM offset :
         {LPARAM{0}, LPARAM{1}, LPARAM{63}, LPARAM{65}, LPARAM{-1}, LPARAM{-960}, LPARAM{65'600},
          LPARAM{64 + 512}, INTPTR_MAX, INTPTR_MIN, LPARAM{64} + (LPARAM{1} << 40)}) {
        EXPECT_EQ(ipcMemAddress(offset), nullptr) << offset;
    }
    IpcMessage outside{};
    ipcMemFree(&outside);
    ipcMemFree(nullptr);
    ipcMemFree(reinterpret_cast<IpcMessage*>(&ipcMemAddress(64)->text));
    EXPECT_EQ(freeSlots(), 63);
    ipcMemClose();
    EXPECT_EQ(ipcMemAddress(64), nullptr);
    EXPECT_EQ(ipcMemAlloc(1024), nullptr);
}

TEST_F(SlotTest, TheBlockLivesWithItsLastProcess) {
    ASSERT_NE(ipcMemAlloc(1024), nullptr);
    ipcMemClose();
    ASSERT_TRUE(ipcMemOpen());
    EXPECT_FALSE(isFree(0)) << "the hub has it open, so its flags stay as they were";
    ipcMemClose();
    m_hub.kill();
    m_hub.wait();
    ASSERT_TRUE(ipcMemOpen());
    EXPECT_EQ(freeSlots(), 64);
}

TEST_F(SlotTest, WithoutAMutexMessagesAreServedInstead) {
    ipcNoMutex = true;
    takeAll();
    static int served = 0;
    const UINT give = RegisterWindowMessageA("give a slot back");
    static UINT number;
    number = give;
    SetWindowProc(m_window, [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (message != number) {
            return DefWindowProcA(window, message, wParam, lParam);
        }
        ++served;
        ipcMemFree(ipcMemAddress(lParam));
        return 0;
    });
    PostMessageA(m_window, give, 0, 64 + 1024 * 9);
    EXPECT_EQ(ipcMemOffset(ipcMemAlloc(1024)), 64 + 1024 * 9);
    EXPECT_EQ(served, 1);

    PostQuitMessage(7);
    EXPECT_EQ(ipcMemAlloc(1024), nullptr);
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, 0, 0, 0), 0);
    EXPECT_EQ(message.wParam, 0U) << "the quit is posted again with the code 0";
    ipcNoMutex = false;
}

}  // namespace
}  // namespace juntora::test
