// "JUNTORA_CLOSE_ALL_APPS": which tools are asked to close, in which order, and what a tool that
// does not answer can do to the hub.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

using CloseAppsTest = HubProcess;
constexpr char CLOSE_ALL[] = "JUNTORA_CLOSE_ALL_APPS";

TEST_F(CloseAppsTest, ClosesEveryToolButTheOneThatAsksTheNewestFirst) {
    startHub();
    const HWND asking = attach("Draftel");
    const HWND first = attach("Sketchel");
    const HWND second = attach("Sketchel");
    EXPECT_TRUE(signOn(first, "Again")) << "a second row of the same window";
    EXPECT_EQ(command(asking, CLOSE_ALL), 0);

    ASSERT_EQ(closedTools().size(), 2U) << "each window once";
    EXPECT_EQ(closedTools()[0].window, first) << "its newest row is in front";
    EXPECT_EQ(closedTools()[1].window, second);
    EXPECT_TRUE(closedTools()[0].wasInFront);
    EXPECT_TRUE(closedTools()[1].wasInFront);
    EXPECT_TRUE(IsWindow(asking));
    EXPECT_FALSE(IsWindow(first));

    EXPECT_EQ(command(asking, CLOSE_ALL), 0);
    EXPECT_EQ(closedTools().size(), 2U) << "they have gone, though their rows have not";
    tick();
    EXPECT_EQ(command(asking, "JUNTORA_ANY_APPS_RUNNING"), 1);
}

TEST_F(CloseAppsTest, AToolThatHangsHoldsUpNeitherTheOthersNorTheHub) {
    startHub();
    const HWND asking = attach("Draftel");
    const HWND other = attach("Sketchel");

    // Signed on from here, for the block is this thread's; hung from the start, for it never looks.
    std::promise<HWND> made;
    std::promise<void> over;
    std::thread hung([&] {
        made.set_value(makeTool());
        over.get_future().wait();
    });
    const HWND hungTool = made.get_future().get();
    EXPECT_TRUE(signOn(hungTool, "Hung"));

    // While the hub waits for it, requests of others are served.
    std::atomic<bool> isClosing = true;
    int served = 0;
    auto longest = std::chrono::steady_clock::duration::zero();
    std::thread client([&] {
        while (isClosing) {
            const auto start = std::chrono::steady_clock::now();
            char text[64];
            served += SendMessageA(listBox(), LB_GETTEXT, 0, reinterpret_cast<LPARAM>(text)) > 0;
            longest = std::max(longest, std::chrono::steady_clock::now() - start);
        }
    });
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(command(asking, CLOSE_ALL), 0);
    const auto took = std::chrono::steady_clock::now() - start;
    isClosing = false;
    client.join();

    EXPECT_GE(took, std::chrono::seconds(4)) << "it is given its time";
    EXPECT_LT(took, std::chrono::seconds(9));
    EXPECT_GT(served, 0);
    EXPECT_LT(longest, std::chrono::seconds(2));
    EXPECT_FALSE(IsWindow(other));
    EXPECT_TRUE(hubGoesOn());
    over.set_value();
    hung.join();
}

TEST_F(CloseAppsTest, ACloseRequestMeanwhileWaitsForItsTurn) {
    startHub();
    // The last tool asks the hub to end from inside its own close, when no row is left: the request
    // that closes it is still being handled.
    static HWND main;
    main = mainDialog();
    const HWND tool = makeTool();
    SetWindowProc(tool, [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        if (message != WM_SYSCOMMAND) {
            return DefWindowProcA(window, message, wParam, lParam);
        }
        signOff(window);
        return SendMessageA(main, WM_SYSCOMMAND, SC_CLOSE, 0);
    });
    EXPECT_TRUE(signOn(tool, "Draftel"));
    EXPECT_EQ(command(makeTool(), CLOSE_ALL), 0);
    EXPECT_TRUE(hubGoesOn()) << "refused, for a request was on its way";
    tick();
    EXPECT_EQ(hubResult(), 0) << "the clock repeats it";
}

}  // namespace
}  // namespace juntora::test
