// The receiving side, with records as a tool or anything else may have put them into a slot.
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <fstream>

#include "tests/ipc/IpcFixture.h"

namespace juntora::test {
namespace {

constexpr std::size_t HEAD = offsetof(IpcMessage, text);

class ReceiveTest : public IpcTest {
protected:
    void SetUp() override {
        attach();
        m_slot = ipcMemAlloc(1024);
        *m_slot = IpcMessage{};
        m_slot->replyLength = 60;
    }

    /// What the window procedure of a tool gets.
    int receive(LPARAM offset, WPARAM opcode = 40) {
        m_record = nullptr;
        return ipcReceive(ipcMessageId, opcode, offset, &m_record, &m_opcode);
    }
    int receive() { return receive(ipcMemOffset(m_slot)); }

    void spill(const std::string& path, int length) {
        m_slot->spillLength = length;
        std::strcpy(m_slot->text, path.c_str());
    }
    std::string file(const std::string& content) {
        std::string path = sandbox().temporaryFolder() + "/IPC1.tmp";
        std::ofstream(path, std::ios::binary) << content;
        return path;
    }

    IpcMessage* m_slot = nullptr;
    IpcMessage* m_record = nullptr;
    int m_opcode = 0;
};

TEST_F(ReceiveTest, OnlyTheMessageOfRecordsIsOne) {
    EXPECT_EQ(ipcReceive(WM_USER, 40, 64, &m_record, &m_opcode), 0);
    EXPECT_EQ(receive(64, 0xFFFF), 1);
    EXPECT_EQ(m_record, m_slot);
    EXPECT_EQ(m_opcode, 0xFFFF);
    for (const LPARAM offset : {LPARAM{0}, LPARAM{65}, LPARAM{-960}, LPARAM{65'600}, INTPTR_MIN}) {
        EXPECT_EQ(receive(offset), 0) << offset;
    }
    ipcMessageId = 0;
    EXPECT_EQ(ipcReceive(0, 0, 64, &m_record, &m_opcode), 0) << "not attached";
}

TEST_F(ReceiveTest, APostedCopyIsTheReceiversToRelease) {
    m_slot->replyLength = 0;
    ASSERT_EQ(receive(), 1);
    EXPECT_EQ(m_record->replyLength, -1);
    EXPECT_FALSE(isFree(0));
    ipcRelease(m_record);
    EXPECT_TRUE(isFree(0));

    m_slot = ipcMemAlloc(1024);
    m_slot->replyLength = 60;
    ASSERT_EQ(receive(), 1);
    EXPECT_EQ(m_record->replyLength, 60);
    ipcRelease(m_record);
    EXPECT_FALSE(isFree(0)) << "a request is the sender's";
    ipcRelease(nullptr);
}

TEST_F(ReceiveTest, TheHubExpandsAndReleasesNothing) {
    ipcSelfId = 0;
    spill(file("text"), 5);
    m_slot->replyLength = 0;
    ASSERT_EQ(receive(), 1);
    EXPECT_EQ(m_record, m_slot);
    EXPECT_NE(std::string(m_record->text).find("IPC1.tmp"), std::string::npos);
    ipcRelease(m_record);
    EXPECT_FALSE(isFree(0));
    EXPECT_EQ(filesLeft(), 1);
}

TEST_F(ReceiveTest, ALongTextComesFromItsFile) {
    const std::string text(70'000, 't');
    m_slot->sender = 0x1a2b;
    m_slot->replyLength = 0;
    spill(file(text + '\0'), 70'001);
    ASSERT_EQ(receive(), 1);
    ASSERT_NE(m_record, m_slot);
    const char* arrived = reinterpret_cast<const char*>(m_record) + HEAD;
    EXPECT_EQ(arrived, text);
    EXPECT_EQ(m_record->sender, 0x1a2bU);
    EXPECT_EQ(m_record->spillLength, 70'001);
    EXPECT_EQ(m_record->link, 64U);
    EXPECT_EQ(m_record->replyLength, -1);
    EXPECT_EQ(filesLeft(), 0);
    ipcRelease(m_record);
    EXPECT_TRUE(isFree(0));

    m_slot = ipcMemAlloc(1024);
    spill(file(text), 70'000);
    ASSERT_EQ(receive(), 1);
    ipcMemClose();
    EXPECT_EQ(m_record->text[1003], 't') << "the copy outlives the block";
    ipcRelease(m_record);
}

TEST_F(ReceiveTest, ALongTextsAnswerReturnsItsFirstWord) {
    spill(file(std::string(2000, 't') + '\0'), 2001);
    ASSERT_EQ(receive(), 1);
    std::strcpy(m_record->text, "answer");
    m_record->replyLength = 7;
    const std::string path(m_slot->text);
    ipcRelease(m_record);
    EXPECT_EQ(m_slot->replyLength, 7);
    EXPECT_EQ(m_slot->link, 0U);
    EXPECT_EQ(std::string(m_slot->text, 4), "answ");
    EXPECT_EQ(std::string(m_slot->text + 4), path.substr(4));
    EXPECT_FALSE(isFree(0));
}

TEST_F(ReceiveTest, WhatIsNoFileGivesAnEmptyText) {
    const std::string folder = sandbox().temporaryFolder();
    const std::string pipe = folder + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const std::string& path : {folder + "/none", folder, pipe, std::string()}) {
        spill(path, 5000);
        ASSERT_EQ(receive(), 1) << path;
        EXPECT_NE(m_record, m_slot);
        EXPECT_STREQ(m_record->text, "") << path;
        ipcRelease(m_record);
    }
    EXPECT_TRUE(std::filesystem::exists(pipe)) << "nothing but files is deleted";
}

TEST_F(ReceiveTest, ALengthIsOnlyAClaim) {
    struct Case {
        int length;
        const char* expected;
    };
    for (const Case& c : {Case{1, "c"}, Case{3, "con"}, Case{8, "content"},
                          Case{50'000'000, "content"}, Case{INT32_MAX, ""}}) {
        spill(file("content"), c.length);
        ASSERT_EQ(receive(), 1);
        EXPECT_STREQ(m_record->text, c.expected) << c.length;
        std::memset(m_record->text, 'r', 1004);
        ipcRelease(m_record);
    }
    EXPECT_EQ(filesLeft(), 0);
    spill("plain", -5);
    ASSERT_EQ(receive(), 1);
    EXPECT_EQ(m_record, m_slot);
    EXPECT_STREQ(m_record->text, "plain");
}

TEST_F(ReceiveTest, ATextAlwaysEnds) {
    std::memset(m_slot->text, 'x', sizeof m_slot->text);
    ASSERT_EQ(receive(), 1);
    EXPECT_EQ(strnlen(m_record->text, 1004), 1003U);

    std::memset(m_slot->text, '/', sizeof m_slot->text);
    m_slot->spillLength = 10;
    ASSERT_EQ(receive(), 1) << "a path without an end";
    EXPECT_STREQ(m_record->text, "");
    ipcRelease(m_record);
}

TEST_F(ReceiveTest, TheExpectedRecordIsTakenOutOfTheQueue) {
    const auto post = [this](const char* text) { ASSERT_EQ(ipcPost(30, text, m_window), 1); };
    post("ready 1");
    post("ready 2");
    post("ready 3");
    PostQuitMessage(6);
    EXPECT_EQ(ipcPeekExpected(m_window, 30, "ready"), 1);
    EXPECT_EQ(ipcPeekExpected(m_window, 30, "busy"), 0);
    EXPECT_EQ(ipcPeekExpected(m_window + 1, 30, ""), 0);
    EXPECT_EQ(ipcPeekExpected(m_window, 30, ""), 0) << "none is left";
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, 0, 0, 0), 0);
    EXPECT_EQ(message.wParam, 6U) << "the quit is not lost over it";
    EXPECT_EQ(freeSlots(), 60) << "nothing was released";
}

}  // namespace
}  // namespace juntora::test
