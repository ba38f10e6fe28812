// Windows as all processes of a desktop see them.
#include "platform/desktop/window.h"

#include <algorithm>
#include <thread>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/kernel/sync.h"
#include "tests/platform/Peer.h"
#include "tests/platform/PeerMessages.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

class WindowTest : public TestDesktop {
protected:
    WindowTest() {
        const WNDCLASSA windowClass{0, DefWindowProcA, 0, 0, 0, "WindowTest"};
        RegisterClassA(&windowClass);
    }

    static HWND make(const char* title, DWORD style = 0, HWND parent = 0, int id = 0) {
        return CreateWindowExA(0, "WindowTest", title, style, 1, 2, 30, 40, parent, id);
    }

    static std::vector<HWND> topLevel() {
        std::vector<HWND> windows;
        EnumWindows(
            [](HWND window, LPARAM context) {
                reinterpret_cast<std::vector<HWND>*>(context)->push_back(window);
                return 1;
            },
            reinterpret_cast<LPARAM>(&windows));
        return windows;
    }
};

TEST_F(WindowTest, AreFoundByClassAndTitleWhereverTheyAre) {
    EXPECT_EQ(0U, FindWindowA(PEER_CLASS, "one"));
    Peer one("one");
    Peer two("two");
    EXPECT_EQ(one.window, FindWindowA(PEER_CLASS, "one"));
    EXPECT_EQ(two.window, FindWindowA("platformpeer", "TWO")) << "case does not matter";
    EXPECT_EQ(two.window, FindWindowA(PEER_CLASS, nullptr)) << "the one in front";
    EXPECT_EQ(one.window, FindWindowA(nullptr, "one"));
    EXPECT_EQ(0U, FindWindowA("WindowTest", "one"));
    SetWindowTextA(two.window, "one");
    EXPECT_EQ(two.window, FindWindowA(PEER_CLASS, "one"));
    SetWindowPos(two.window, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    EXPECT_EQ(one.window, FindWindowA(PEER_CLASS, "one"));
    one.process.kill();
    one.process.wait();
    EXPECT_EQ(two.window, FindWindowA(PEER_CLASS, "one")) << "the dead one's is gone";
    SendMessageA(two.window, PEER_QUIT, 0, 0);
    EXPECT_EQ(0, two.process.wait());
    EXPECT_EQ(0U, FindWindowA(PEER_CLASS, "one"));
}

TEST_F(WindowTest, AChildOfTheDesktopIsFoundAndAChildOfAWindowIsNot) {
    const HWND frame = make("frame");
    const HWND inner = make("inner", WS_CHILD, frame, 7);
    const HWND hidden = make("hidden", WS_CHILD | WS_BORDER, GetDesktopWindow(), 101);
    EXPECT_EQ(hidden, FindWindowA("WindowTest", "hidden"));
    EXPECT_EQ(0U, FindWindowA("WindowTest", "inner"));
    EXPECT_EQ(inner, GetDlgItem(frame, 7));
    EXPECT_EQ(frame, GetParent(inner));
    EXPECT_TRUE(DestroyWindow(frame));
    EXPECT_FALSE(IsWindow(inner)) << "children go with their parent";
    DestroyWindow(hidden);
}

TEST_F(WindowTest, HandlesAreNotGivenOutAgainSoon) {
    std::vector<HWND> seen;
    for (int i = 0; i < 1000; ++i) {
        const HWND window = make("short-lived");
        ASSERT_NE(0U, window);
        ASSERT_NE(0xFFFFFFFF, window);
        seen.push_back(window);
        DestroyWindow(window);
        EXPECT_FALSE(IsWindow(window));
    }
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen.end(), std::adjacent_find(seen.begin(), seen.end()));
}

TEST_F(WindowTest, TheWindowOrderFollowsWhatComesToTheFront) {
    const HWND back = make("back");
    const HWND middle = make("middle");
    const HWND front = make("front");
    EXPECT_EQ((std::vector<HWND>{front, middle, back}), topLevel());
    EXPECT_EQ(middle, GetWindow(front, GW_HWNDNEXT));
    SetForegroundWindow(back);
    EXPECT_EQ((std::vector<HWND>{back, front, middle}), topLevel());
    EXPECT_EQ(back, GetForegroundWindow());
    EXPECT_EQ(0U, GetWindow(middle, GW_HWNDNEXT));
    for (const HWND window : {back, middle, front}) {
        DestroyWindow(window);
    }
}

TEST_F(WindowTest, StateIsSeenByOthersAndCountsAsChange) {
    Peer peer;
    const DWORD before = GetWindowChangeCount(peer.window);
    EXPECT_FALSE(ShowWindow(peer.window, SW_SHOWMINNOACTIVE));
    EXPECT_TRUE(IsWindowVisible(peer.window));
    EXPECT_TRUE(IsIconic(peer.window));
    EXPECT_TRUE(ShowWindow(peer.window, SW_SHOWNORMAL));
    EXPECT_FALSE(IsIconic(peer.window));
    EXPECT_NE(before, GetWindowChangeCount(peer.window));
    SendMessageA(peer.window, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_FALSE(IsWindow(peer.window)) << "by default a close destroys";
}

TEST_F(WindowTest, AViewerSeesWhatIsShownAndHearsOfEachChange) {
    Peer peer;
    EXPECT_TRUE(ViewWindows().value().empty()) << "nothing is visible";
    ShowWindow(peer.window, SW_SHOWNORMAL);
    const HWND owned = CreateWindowExA(WS_EX_APPWINDOW, "WindowTest", "owned",
                                       WS_POPUP | WS_VISIBLE, 10, 20, 30, 40, peer.window, 5);
    const HWND first = make("first", WS_CHILD, owned, 1);
    const HWND second = make("second", WS_CHILD | WS_VISIBLE, owned, 2);
    SendMessageA(owned, WM_SETICON, 0, 128);

    const std::vector<ViewedWindow> viewed = ViewWindows().value();
    ASSERT_EQ(4U, viewed.size());
    EXPECT_EQ(owned, viewed[0].window) << "the front-most first";
    EXPECT_EQ(peer.window, viewed[0].owner);
    EXPECT_EQ(peer.window, GetWindow(owned, GW_OWNER));
    EXPECT_EQ(128, viewed[0].icon);
    EXPECT_EQ(40, viewed[0].place.right);
    EXPECT_EQ(first, viewed[1].window) << "what is in a window, in the order of its making";
    EXPECT_EQ(second, viewed[2].window);
    EXPECT_EQ("second", viewed[2].text);
    EXPECT_EQ(peer.window, viewed[3].window);

    const DWORD seen = ViewChangeCount();
    EXPECT_EQ(seen, AwaitViewChange(seen, 1)) << "nothing happens";
    std::thread changing([&] { SetWindowTextA(peer.window, "changed"); });
    EXPECT_NE(seen, AwaitViewChange(seen, 10'000));
    changing.join();
    peer.process.kill();
    ASSERT_TRUE(peer.process.wait());
    DestroyWindow(owned);
    EXPECT_TRUE(ViewWindows().value().empty()) << "the dead show nothing";
}

TEST_F(WindowTest, MoreWindowsThanTheDesktopHoldsAreRefused) {
    std::vector<HWND> windows;
    for (HWND window = make("one of many"); window != 0; window = make("one of many")) {
        windows.push_back(window);
    }
    EXPECT_EQ(ERROR_NOT_ENOUGH_MEMORY, GetLastError());
    EXPECT_GT(windows.size(), 30'000U);
    DestroyWindow(windows.back());
    EXPECT_NE(0U, make("one more"));
}

}  // namespace
}  // namespace juntora::test
