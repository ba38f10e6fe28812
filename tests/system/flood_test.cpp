// A hub under a tool that sends as fast as it can.
#include <algorithm>
#include <chrono>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

class QuietTool : public ipc {
public:
    QuietTool() : ipc("Quiet", makeWindow(), 0, nullptr, 0, 0) {}
    int onRequest(int, IpcMessage*) override { return 0; }

private:
    static HWND makeWindow() {
        const WNDCLASSA windowClass{0, DefWindowProcA, 0, 0, 0, "QuietTool"};
        RegisterClassA(&windowClass);
        return CreateWindowExA(0, "QuietTool", "", 0, 0, 0, 0, 0, 0, 0);
    }
};

class FloodTest : public TestDesktop {
protected:
    FloodTest() : m_planchet(CreateMutexA(false, "TarvexVoltaraPlanchetFindWnd16.6.0")) {}
    ~FloodTest() override { CloseHandle(m_planchet); }

private:
    HANDLE m_planchet;  ///< Held, so that the hub finds Planchet running.
};

TEST_F(FloodTest, AQuietToolIsAnsweredBesideAFloodAndNoRecordIsLost) {
    constexpr char COUNT[] = "100000";
    ChildProcess hub("juntora");
    while (ipcFindHub() == 0) {
        ASSERT_TRUE(hub.isRunning());
        Sleep(1);
    }
    const QuietTool quiet;
    ASSERT_STREQ("Quiet;0", quiet.m_pName);
    ChildProcess receiver("flooder", {"receive", COUNT});
    ChildProcess flooder("flooder", {"send", receiver.readLine().value_or("0"), COUNT});
    int asked = 0;
    int answered = 0;
    double longest = 0;
    while (flooder.isRunning()) {
        const auto start = std::chrono::steady_clock::now();
        answered += ipcIsAlive(ipcSelfId);
        ++asked;
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        longest = std::max(longest, took.count());
        Sleep(1);
    }
    EXPECT_EQ("sent", flooder.readLine());
    EXPECT_EQ(0, receiver.wait().value_or(-1)) << "a record was lost or came out of order";
    EXPECT_GT(asked, 10);
    EXPECT_EQ(asked, answered);
    // No limit of the protocol may be reached: a request that waits 5 s for the block's mutex
    // fails.
    EXPECT_LT(longest, 5.0);
}

}  // namespace
}  // namespace juntora::test
