// Signing on and off, and starting the hub.
#include <cstdlib>
#include <sstream>

#include "tests/ipc/IpcFixture.h"

namespace juntora::test {
namespace {

class Tool : public ipc {
public:
    explicit Tool(HWND window, const char* name = "Draftel", char* buffer = nullptr,
                  std::uint32_t capacity = 0)
        : ipc(name, window, 0, buffer, capacity, 0) {}
    int onRequest(int, IpcMessage*) override { return 1; }
};

using AttachTest = IpcTest;

TEST_F(AttachTest, SigningOnAndOff) {
    {
        const Tool tool(m_window);
        const SeenRecord record = seen();
        EXPECT_EQ(record.opcode, 10);
        EXPECT_EQ(record.text, "Draftel 117707");
        EXPECT_EQ(record.replyLength, 60);
        EXPECT_EQ(record.sender, m_window);
        EXPECT_STREQ(tool.m_pName, "Draftel;0");
        EXPECT_EQ(tool.m_nNameLength, 10 + std::snprintf(nullptr, 0, "%x ", m_window));
        EXPECT_EQ(ipcSelfId, m_window);
        EXPECT_EQ(ipcHubWindow, m_hubWindow);
        EXPECT_EQ(ipcParentId, 0U);
        ASSERT_EQ(ipcPost(30, "never read", m_window), 1);
        EXPECT_EQ(seen().opcode, 30) << "without PARENT nobody was greeted";
    }
    const SeenRecord record = seen();
    EXPECT_EQ(record.opcode, 11);
    EXPECT_EQ(record.replyLength, 2);
    EXPECT_EQ(record.text, "");
    EXPECT_EQ(ipcSelfId, IPC_NO_IDENTITY);
    EXPECT_EQ(ipcMessageId, 0U);
    EXPECT_EQ(ipcHubWindow, m_hubWindow);
    ASSERT_TRUE(ipcMemOpen());
    EXPECT_EQ(freeSlots(), 64) << "what waited in the queue has been given back";
}

TEST_F(AttachTest, TheNameGoesToTheCallersBufferToo) {
    char buffer[32] = "before";
    const Tool tool(m_window, "Draftel", buffer, sizeof buffer);
    EXPECT_EQ(seen().replyLength, 32);
    EXPECT_STREQ(buffer, "Draftel;0");
    EXPECT_STREQ(tool.m_pName, "Draftel;0");
    EXPECT_EQ(tool.m_nNameLength, 9U);
}

TEST_F(AttachTest, ARefusal) {
    tellHub("result 10 0");
    char buffer[32] = "before";
    const Tool tool(m_window, "Draftel", buffer, sizeof buffer);
    EXPECT_STREQ(tool.m_pName, "");
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(ipcSelfId, m_window);
    EXPECT_NE(ipcMessageId, 0U);
}

TEST_F(AttachTest, AnswersThatAreNone) {
    struct Case {
        const char* answer;
        const char* name;
    };
    for (const Case& c : {Case{"0 nothing", ""}, Case{"xyz", ""}, Case{"1a2b", ""},
                          Case{"1a2b   Long;12 more", "Long;12"}}) {
        tellHub("result 10 1");
        tellHub(std::string("reply 10 1004 ") + c.answer);
        const Tool tool(m_window, "D");
        EXPECT_STREQ(tool.m_pName, c.name) << c.answer;
        EXPECT_NE(ipcSelfId, 0U) << "0 is the hub's";
    }
    tellHub("reply 10 9 1a2b Draftel;0");
    char buffer[9];
    const Tool tool(m_window, "Draftel", buffer, sizeof buffer);
    EXPECT_STREQ(tool.m_pName, "Draf") << "an answer that was cut off";
}

TEST_F(AttachTest, ANameThatDoesNotFitIsNotSent) {
    { const Tool tool(m_window, std::string(995, 'n').c_str()); }
    { const Tool tool(m_window, "D"); }
    EXPECT_EQ(seen().opcode, 11) << "the first one's sign-off";
    EXPECT_EQ(seen().text, "D 117707");
}

TEST_F(AttachTest, TheParentIsGreetedOnce) {
    std::ostringstream parent;
    parent << std::hex << m_window;
    setenv("PARENT", parent.str().c_str(), 1);
    const Tool tool(m_window);
    EXPECT_EQ(seen().opcode, 10);
    const SeenRecord record = seen();
    EXPECT_EQ(record.opcode, 15);
    EXPECT_EQ(record.target, m_window);
    EXPECT_EQ(record.replyLength, -1);
    EXPECT_EQ(record.text, "");
    EXPECT_EQ(ipcParentId, m_window);
    EXPECT_EQ(std::getenv("PARENT"), nullptr);

    setenv("PARENT", "no number", 1);
    ipcDetach();
    EXPECT_EQ(seen().opcode, 11);
    const Tool second(m_window);
    EXPECT_EQ(std::getenv("PARENT"), nullptr);
    ipcIsAlive(1);
    EXPECT_EQ(seen().opcode, 10);
    EXPECT_EQ(seen().opcode, 31) << "nobody to greet";
}

TEST_F(AttachTest, ALookLeavesNoTrace) {
    EXPECT_FALSE(ipcObserve(0));
    ASSERT_TRUE(ipcObserve(IPC_NO_IDENTITY));
    ipcIsAlive(5);
    const SeenRecord record = seen();
    EXPECT_EQ(record.opcode, 31);
    EXPECT_EQ(record.sender, IPC_NO_IDENTITY);
    tellHub("hide");
    EXPECT_FALSE(ipcObserve(m_window));
}

TEST_F(AttachTest, TheHubItselfOnlyOpensTheBlock) {
    ipcSelfId = 0;
    char name[8] = "";
    int capacity = sizeof name;
    EXPECT_EQ(ipcAttach("x", m_window, name, &capacity, 1), 0U);
    EXPECT_EQ(ipcHubWindow, m_window);
    EXPECT_NE(ipcMemAddress(64), nullptr);
    EXPECT_EQ(ipcDetach(), 0) << "and signs off nowhere";
}

}  // namespace
}  // namespace juntora::test
