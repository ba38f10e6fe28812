// Sent and posted messages between real processes.
#include "platform/desktop/message.h"

#include <poll.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <vector>

#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/platform/Peer.h"
#include "tests/platform/PeerMessages.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

class MessageTest : public TestDesktop {
protected:
    static LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == PEER_ADD) {
            return static_cast<LRESULT>(wParam) + lParam;
        }
        return DefWindowProcA(window, message, wParam, lParam);
    }

    static HWND makeWindow(const char* title) {
        const WNDCLASSA windowClass{0, handle, 0, 0, 0, "MessageTest"};
        RegisterClassA(&windowClass);
        return CreateWindowExA(0, "MessageTest", title, 0, 0, 0, 0, 0, 0, 0);
    }
};

TEST_F(MessageTest, SentMessagesBringTheirResultBack) {
    Peer peer;
    EXPECT_EQ(42, SendMessageA(peer.window, PEER_ADD, 40, 2));
    EXPECT_EQ(-3, SendMessageA(peer.window, PEER_ADD, 4, -7));
    const HWND own = makeWindow("own");
    EXPECT_EQ(42, SendMessageA(own, PEER_ADD, 40, 2)) << "to a window of the sending thread";
    EXPECT_EQ(202, SendMessageA(peer.window, PEER_ASK_BACK, own, 100))
        << "a waiting sender serves what is sent to it";
    DestroyWindow(own);
    EXPECT_EQ(0, SendMessageA(own, PEER_ADD, 40, 2));
    EXPECT_EQ(ERROR_INVALID_WINDOW_HANDLE, GetLastError());
    EXPECT_EQ(0, SendMessageA(0xFFFFFFFF, PEER_ADD, 40, 2));
}

TEST_F(MessageTest, TextsTravelBothWays) {
    Peer peer;
    std::string text(400, 'x');
    EXPECT_TRUE(SetWindowTextA(peer.window, text.c_str()));
    char buffer[1000];
    EXPECT_EQ(400, SendMessageA(peer.window, WM_GETTEXT, sizeof buffer,
                                reinterpret_cast<LPARAM>(buffer)));
    EXPECT_EQ(text, buffer);
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(9, SendMessageA(peer.window, WM_GETTEXT, 10, reinterpret_cast<LPARAM>(buffer)));
    EXPECT_EQ(std::string(9, 'x') + '\0' + '#', std::string(buffer, 11))
        << "nothing is written behind the capacity";
    const std::string endless(70'000, 'y');
    EXPECT_FALSE(SetWindowTextA(peer.window, endless.c_str())) << "more than a message carries";
    EXPECT_EQ(400, GetWindowTextA(peer.window, buffer, sizeof buffer));
}

TEST_F(MessageTest, AStoppedReceiverIsGivenUpAndAnIdleOneIsNot) {
    Peer peer;
    LRESULT result = 0;
    EXPECT_TRUE(SendMessageUnlessHung(peer.window, PEER_ADD, 1, 2, 5'000, &result));
    EXPECT_EQ(3, result);
    peer.process.kill(SIGSTOP);
    EXPECT_FALSE(SendMessageUnlessHung(peer.window, PEER_ADD, 1, 2, 200, &result));
    EXPECT_EQ(ERROR_TIMEOUT, GetLastError());
    peer.process.kill(SIGCONT);
    EXPECT_EQ(7, SendMessageA(peer.window, PEER_ADD, 3, 4))
        << "the answer to the message given up does not fit the next one";
}

TEST_F(MessageTest, PostsKeepTheirOrderAndAFullQueueRefuses) {
    Peer peer;
    peer.process.kill(SIGSTOP);
    LPARAM posted = 0;
    while (posted < 20'000 && PostMessageA(peer.window, PEER_COUNT, 0, posted)) {
        ++posted;
    }
    EXPECT_GE(posted, 10'000);
    EXPECT_LT(posted, 20'000);
    EXPECT_EQ(ERROR_TOO_MANY_POSTS, GetLastError());
    peer.process.kill(SIGCONT);
    while (SendMessageA(peer.window, PEER_COUNTED, 0, 0) != posted) {
        ASSERT_TRUE(peer.process.isRunning());
        ASSERT_NE(-1, SendMessageA(peer.window, PEER_COUNTED, 0, 0)) << "out of order";
    }
}

TEST_F(MessageTest, ManySendersAreAllServed) {
    Peer peer;
    constexpr int SENDERS = 8;
    constexpr int EACH = 2'000;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> senders;
    senders.reserve(SENDERS);
    for (int s = 0; s < SENDERS; ++s) {
        senders.emplace_back([&, s] {
            for (int i = 0; i < EACH; ++i) {
                if (SendMessageA(peer.window, PEER_ADD, static_cast<WPARAM>(s), i) != s + i) {
                    ++wrong;
                }
            }
        });
    }
    for (std::thread& sender : senders) {
        sender.join();
    }
    EXPECT_EQ(0, wrong);
}

TEST_F(MessageTest, PeekTakesWhatItAsksForAndLeavesTheRestInOrder) {
    const HWND window = makeWindow("own");
    for (const UINT message : {WM_USER + 1, WM_USER + 2, WM_USER + 1, WM_USER + 3}) {
        PostMessageA(window, message, 0, 0);
    }
    MSG message{};
    EXPECT_TRUE(PeekMessageA(&message, 0, WM_USER + 2, WM_USER + 3, PM_NOREMOVE));
    EXPECT_EQ(WM_USER + 2, message.message);
    EXPECT_TRUE(PeekMessageA(&message, 0, WM_USER + 2, WM_USER + 3, PM_REMOVE));
    EXPECT_EQ(WM_USER + 2, message.message);
    PostQuitMessage(7);
    for (const UINT expected : {WM_USER + 1, WM_USER + 1, WM_USER + 3}) {
        EXPECT_EQ(1, GetMessageA(&message, 0, 0, 0));
        EXPECT_EQ(expected, message.message);
    }
    EXPECT_EQ(0, GetMessageA(&message, 0, 0, 0));
    EXPECT_EQ(7U, message.wParam);
    EXPECT_FALSE(PeekMessageA(&message, 0, 0, 0, PM_REMOVE));
}

TEST_F(MessageTest, TimersTickUntilTheirWindowGoes) {
    const HWND window = makeWindow("own");
    const auto start = Clock::now();
    ASSERT_EQ(5U, SetTimer(window, 5, 20, nullptr));
    MSG message{};
    for (int tick = 0; tick < 3; ++tick) {
        ASSERT_EQ(1, GetMessageA(&message, 0, 0, 0));
        EXPECT_EQ(WM_TIMER, message.message);
        EXPECT_EQ(5U, message.wParam);
    }
    EXPECT_GE(millisecondsSince(start), 55.0);
    DestroyWindow(window);
    EXPECT_FALSE(KillTimer(window, 5));
}

TEST_F(MessageTest, WhatACallbackThrowsDoesNotPassThroughTheLoop) {
    HWND window = makeWindow("own");
    const auto failingTick = [](HWND owner, UINT, std::uintptr_t id, DWORD) {
        KillTimer(owner, id);
        throw std::runtime_error("no tick");
    };
    SetTimer(window, 5, 10, failingTick);
    int ends[2];
    ASSERT_EQ(0, pipe(ends));
    const auto failingReader = [](void* context) {
        PostMessageA(*static_cast<HWND*>(context), WM_USER, 0, 0);
        throw std::runtime_error("no byte");
    };
    testing::internal::CaptureStderr();
    MSG message{};
    ASSERT_EQ(1, GetMessageA(&message, 0, 0, 0));
    EXPECT_EQ(0, DispatchMessageA(&message));
    ASSERT_TRUE(WatchDescriptor(ends[0], failingReader, &window));
    EXPECT_EQ(1, write(ends[1], "x", 1));
    ASSERT_EQ(1, GetMessageA(&message, 0, 0, 0));
    EXPECT_EQ(WM_USER, message.message);
    const std::string told = testing::internal::GetCapturedStderr();
    EXPECT_NE(told.find("timer 5 failed: no tick"), std::string::npos) << told;
    EXPECT_NE(told.find("failed: no byte"), std::string::npos) << told;
    UnwatchDescriptor(ends[0]);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(MessageTest, AForeignLoopIsToldOfMailAndTimers) {
    const HWND window = makeWindow("foreign");
    Peer peer;
    ASSERT_TRUE(DispatchWaitingMessages());
    pollfd ready{GetQueueDescriptor(), POLLIN, 0};
    ASSERT_GE(ready.fd, 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(0, poll(&ready, 1, 0)) << "nothing waits";
        std::thread sender([&] { EXPECT_EQ(5, SendMessageA(window, PEER_ADD, 2, 3)); });
        EXPECT_EQ(1, poll(&ready, 1, 10'000));
        EXPECT_TRUE(DispatchWaitingMessages());
        sender.join();
        EXPECT_TRUE(DispatchWaitingMessages());
    }
    SetTimer(window, 1, 10, nullptr);
    EXPECT_TRUE(DispatchWaitingMessages());
    EXPECT_EQ(1, poll(&ready, 1, 10'000));
    KillTimer(window, 1);
    PostQuitMessage(0);
    EXPECT_FALSE(DispatchWaitingMessages());
}

TEST_F(MessageTest, NamesHaveOneNumberEverywhere) {
    Peer peer;
    const UINT number = RegisterWindowMessageA("ohmaraMsg16.6.0");
    EXPECT_GE(number, FIRST_REGISTERED_MESSAGE);
    EXPECT_EQ(number, peer.ask("name OHMARAMSG16.6.0"));
    EXPECT_NE(number, RegisterWindowMessageA("ohmaraMsg16.6.1"));
    EXPECT_EQ(0U, RegisterWindowMessageA(""));
    EXPECT_EQ(0U, RegisterWindowMessageA(std::string(256, 'n').c_str()));
}

}  // namespace
}  // namespace juntora::test
