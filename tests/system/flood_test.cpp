// A hub under a tool that sends as fast as it can.
#include <algorithm>
#include <chrono>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

class QuietTool : public ipc {
public:
    explicit QuietTool(HWND window) : ipc("Quiet", window, 0, nullptr, 0, 0) {}
    int onRequest(int, IpcMessage*) override { return 0; }
};

using FloodTest = HubProcess;

TEST_F(FloodTest, AQuietToolIsAnsweredBesideAFloodAndNoRecordIsLost) {
    constexpr char COUNT[] = "100000";
    startHub();
    const QuietTool quiet(makeTool());
    ASSERT_STREQ("Quiet;0", quiet.m_pName);
    ChildProcess receiver("test_tool", {COUNT}, {{"TOOL_DOES=receive"}});
    ChildProcess flooder("test_tool", {COUNT, receiver.readLine().value_or("0")},
                         {{"TOOL_DOES=send"}});
    int answered = 0;
    double longest = 0;
    while (flooder.isRunning()) {
        const auto start = std::chrono::steady_clock::now();
        // 0: the block was full for a while, since the machine had no time for those who empty it.
        while (ipcIsAlive(ipcSelfId) == 0 && hubGoesOn()) {
        }
        ++answered;
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        longest = std::max(longest, took.count());
        Sleep(1);
    }
    EXPECT_EQ("sent", flooder.readLine());
    EXPECT_EQ(0, receiver.wait().value_or(-1)) << "a record was lost or came out of order";
    EXPECT_GT(answered, 10);
    // No limit of the protocol may be reached: a request that waits 5 s for the block's mutex
    // fails.
    EXPECT_LT(longest, 5.0);
}

}  // namespace
}  // namespace juntora::test
