// Sending records: what a hub in another process finds in its slots, and what comes back.
#include <algorithm>
#include <filesystem>
#include <thread>

#include "tests/ipc/IpcFixture.h"

namespace juntora::test {
namespace {

using SendTest = IpcTest;

TEST_F(SendTest, TheRecordOnItsWay) {
    attach();
    char reply[60];
    int capacity = sizeof reply;
    ipcSend(40, "a text", 0, reply, &capacity);
    SeenRecord record = seen();
    EXPECT_EQ(record.opcode, 40);
    EXPECT_EQ(record.target, 0U);
    EXPECT_EQ(record.sender, m_window);
    EXPECT_EQ(record.replyLength, 60);
    EXPECT_EQ(record.spillLength, 0);
    EXPECT_EQ(record.link, 0);
    EXPECT_EQ(record.offset, 64);
    EXPECT_EQ(record.text, "a text");

    ipcPost(0x1FFFF, nullptr, 0);
    record = seen();
    EXPECT_EQ(record.opcode, 0xFFFF) << "opcodes are 16 bits wide";
    EXPECT_EQ(record.replyLength, -1);
    EXPECT_EQ(record.text, "");
    EXPECT_EQ(freeSlots(), 64);
}

TEST_F(SendTest, LongTextsGoByAFile) {
    attach();
    char reply[8];
    int capacity = sizeof reply;
    ipcSend(40, std::string(999, 'x').c_str(), 0, reply, &capacity);
    SeenRecord record = seen();
    EXPECT_EQ(record.spillLength, 0);
    EXPECT_EQ(record.text, std::string(999, 'x'));

    ipcSend(40, std::string(1000, 'y').c_str(), 0, reply, &capacity);
    record = seen();
    EXPECT_EQ(record.spillLength, 1001);
    const std::filesystem::path path(record.text);
    EXPECT_EQ(path.parent_path(), sandbox().temporaryFolder());
    EXPECT_EQ(path.filename().string().substr(0, 3), "IPC");
    EXPECT_EQ(filesLeft(), 0) << "the sender deletes it after the answer";
}

TEST_F(SendTest, AFileThatNobodyWillReadIsDeleted) {
    attach();
    const std::string text(5000, 'z');
    EXPECT_EQ(ipcPost(30, text.c_str(), 0), 0);
    EXPECT_EQ(ipcPost(30, text.c_str(), 0x7fffff), 0) << "no such target";
    EXPECT_EQ(filesLeft(), 0);
    EXPECT_NE(ipcPost(30, text.c_str(), m_window), 0);
    EXPECT_EQ(filesLeft(), 1) << "it is the receiver's";
}

TEST_F(SendTest, AFileThatCannotBeWrittenSendsNothing) {
    attach();
    const std::string folder = sandbox().temporaryFolder();
    ASSERT_TRUE(std::filesystem::remove(folder));
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path("/proc");
    EXPECT_EQ(ipcPost(30, std::string(5000, 'z').c_str(), m_window), 0);
    std::filesystem::current_path(here);
    std::filesystem::create_directory(folder);
    ipcPost(31, "next", 0);
    EXPECT_EQ(seen().opcode, 31);
}

TEST_F(SendTest, TheAnswer) {
    attach();
    tellHub("result 40 -17");
    tellHub("reply 40 6 hello");
    char reply[60];
    std::fill(std::begin(reply), std::end(reply), '#');
    int capacity = sizeof reply;
    EXPECT_EQ(ipcSend(40, "x", 0, reply, &capacity), -17);
    EXPECT_EQ(capacity, 6);
    EXPECT_STREQ(reply, "hello");
    EXPECT_EQ(reply[6], '#');
}

TEST_F(SendTest, AnAnswerIsNeverLongerThanItsBuffer) {
    attach();
    struct Case {
        const char* claimed;
        int capacity;
        int expected;
    };
    for (const Case& c : {Case{"5000", 60, 60}, Case{"2147483647", 2000, 1004}, Case{"0", 60, 60},
                          Case{"-5", 60, 60}, Case{"keep", 3, 3}}) {
        tellHub(std::string("reply 40 ") + c.claimed + " answer");
        std::vector<char> reply(2001, '#');
        int capacity = c.capacity;
        ipcSend(40, "x", 0, reply.data(), &capacity);
        EXPECT_EQ(capacity, c.expected) << c.claimed;
        EXPECT_EQ(reply[static_cast<std::size_t>(c.expected)], '#') << c.claimed;
        EXPECT_EQ(reply[0], c.claimed[0] == '0' || c.claimed[0] == '-' ? '#' : 'a') << c.claimed;
    }
}

TEST_F(SendTest, NothingIsSentWithoutAHubOrARoomForTheAnswer) {
    char reply[8] = "";
    int capacity = sizeof reply;
    EXPECT_EQ(ipcSend(40, "x", 0, reply, &capacity), 0) << "not attached";
    EXPECT_EQ(ipcPost(40, "x", 0), 0);
    attach();
    tellHub("result 40 9");
    capacity = 0;
    EXPECT_EQ(ipcSend(40, "x", 0, reply, &capacity), 0) << "it would be taken for a posted copy";
    capacity = sizeof reply;
    tellHub("hide");
    EXPECT_EQ(ipcSend(40, "x", 0, reply, &capacity), 0);
    EXPECT_EQ(ipcPost(40, "x", m_window), 0);
    tellHub("show");
    EXPECT_EQ(ipcSend(40, "y", 0, reply, &capacity), 9);
    EXPECT_EQ(seen().text, "y") << "the only one that has reached the hub";
    EXPECT_EQ(freeSlots(), 64);
}

TEST_F(SendTest, AHubThatDiesInTheMiddleCostsNothing) {
    attach();
    m_hub.kill(SIGSTOP);
    std::thread killer([this] {
        while (isFree(0)) {
            std::this_thread::yield();
        }
        m_hub.kill(SIGKILL);
    });
    char reply[8];
    int capacity = sizeof reply;
    EXPECT_EQ(ipcSend(40, "x", 0, reply, &capacity), 0);
    killer.join();
    EXPECT_EQ(capacity, 8);
    EXPECT_EQ(freeSlots(), 64);
}

TEST_F(SendTest, AToolThatEndsWhileItWaitsHasItsAnswer) {
    attach();
    SetWindowProc(m_window, [](HWND, UINT message, WPARAM, LPARAM) -> LRESULT {
        if (message == WM_CLOSE) {
            ipcDetach();
        }
        return 0;
    });
    ipcSelfId = m_window;
    tellHub("close 40");
    tellHub("result 40 7");
    tellHub("reply 40 6 hello");
    char reply[60] = "";
    int capacity = sizeof reply;
    EXPECT_EQ(ipcSend(40, "x", 0, reply, &capacity), 7);
    EXPECT_STREQ(reply, "hello");
    EXPECT_EQ(ipcSend(41, "x", 0, reply, &capacity), 0) << "it has left";
    EXPECT_EQ(ipcMemAlloc(1), nullptr) << "the block has been closed";
    attach();
    EXPECT_EQ(freeSlots(), 64);
}

TEST_F(SendTest, ARecordForAPeerGoesPastTheHub) {
    attach();
    static std::string arrived;
    SetWindowProc(m_window, [](HWND, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
        IpcMessage* record = nullptr;
        int opcode = 0;
        if (!ipcReceive(message, wParam, lParam, &record, &opcode)) {
            return 0;
        }
        arrived = std::to_string(opcode) + record->text;
        record->text[0] = 'A';
        record->text[1] = '\0';
        record->replyLength = 2;
        ipcRelease(record);
        return 12;
    });
    char reply[8] = "";
    int capacity = sizeof reply;
    EXPECT_EQ(ipcSend(40, "direct", m_window, reply, &capacity), 12);
    EXPECT_EQ(arrived, "40direct");
    EXPECT_STREQ(reply, "A");

    capacity = sizeof reply;
    EXPECT_EQ(ipcSend(41, std::string(3000, 'L').c_str(), m_window, reply, &capacity), 12);
    EXPECT_EQ(arrived, "41" + std::string(3000, 'L'));
    EXPECT_STREQ(reply, "A") << "the head and the first word of the copy return to the slot";
    EXPECT_EQ(capacity, 2);
    EXPECT_EQ(freeSlots(), 64);
    EXPECT_EQ(filesLeft(), 0);
}

}  // namespace
}  // namespace juntora::test
