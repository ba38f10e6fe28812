// Each request's opcode, route, capacity and text, and what is made of the result.
#include <unistd.h>

#include <filesystem>
#include <functional>

#include "tests/ipc/IpcFixture.h"

namespace juntora::test {
namespace {

class RequestTest : public IpcTest {
protected:
    void SetUp() override { attach(); }

    /// Runs a call that makes one request, with the hub's result, and checks the record.
    int run(int result, int opcode, int capacity, const std::string& text,
            const std::function<int()>& call, HWND target = 0) {
        tellHub("result " + std::to_string(opcode) + " " + std::to_string(result));
        const int got = call();
        const SeenRecord record = seen();
        EXPECT_EQ(record.opcode, opcode);
        EXPECT_EQ(record.replyLength, capacity) << opcode;
        EXPECT_EQ(record.text, text);
        EXPECT_EQ(record.target, target) << opcode;
        return got;
    }
};

TEST_F(RequestTest, Lookups) {
    EXPECT_EQ(run(77, 13, 2, "Draftel;0", [] { return static_cast<int>(ipcFindApp("Draftel;0")); }),
              77);
    EXPECT_EQ(run(1, 31, 2, "1a2b", [] { return ipcIsAlive(0x1a2b); }), 1);
    EXPECT_EQ(run(1, 16, 2, "aDraftel", [] { return ipcWatchName("Draftel"); }), 1);
    EXPECT_EQ(run(0, 16, 2, "xffffffff", [] { return ipcWatchId(0xFFFFFFFF); }), 0);
    EXPECT_EQ(run(-1, 19, 2, "A=b c", [] { return ipcSetEnv("A=b c"); }), -1);

    char name[40] = "";
    int capacity = sizeof name;
    tellHub("reply 14 10 Draftel;0");
    EXPECT_EQ(run(5, 14, 40, "1a2b", [&] { return ipcAppName(0x1a2b, name, &capacity); }), 1);
    EXPECT_STREQ(name, "Draftel;0");
    EXPECT_EQ(capacity, 10);
    EXPECT_EQ(run(-1, 14, 10, "1a2b", [&] { return ipcAppName(0x1a2b, name, &capacity); }), 0);
}

TEST_F(RequestTest, Files) {
    int isFree = -1;
    HWND holder = 5;
    EXPECT_EQ(run(0, 20, 2, "\"C:\\a b.opj\" 3",
                  [&] { return ipcFileOpen("C:\\a b.opj", 3, &isFree, &holder); }),
              0);
    EXPECT_EQ(isFree, 1);
    EXPECT_EQ(holder, 5U) << "nobody stands in the way";
    EXPECT_EQ(run(99, 21, 2, "\"f\" 1", [&] { return ipcFileQuery("f", 1, &isFree, &holder); }),
              99);
    EXPECT_EQ(isFree, 0);
    EXPECT_EQ(holder, 99U);
    isFree = 1;
    EXPECT_EQ(run(99, 20, 2, "\"f\" 1", [&] { return ipcFileOpen("f", 1, &isFree, nullptr); }), 99);
    EXPECT_EQ(isFree, 0);

    EXPECT_EQ(run(1, 22, 2, "\"f\" 2", [] { return ipcFileClose("f", 2); }), 1);
    EXPECT_EQ(run(8, 24, 2, "\"f\" -1", [] { return ipcFileSetFlags("f", -1); }), 8);
    EXPECT_EQ(run(8, 25, 2, "\"f\" 6", [] { return ipcFileClearFlags("f", 6); }), 8);
}

TEST_F(RequestTest, FileFlags) {
    int flags = 3;
    HWND window = 0x20;
    const auto find = [&] { return static_cast<int>(ipcFileFindFlags("f", &flags, &window)); };
    EXPECT_EQ(run(0, 26, 1000, "\"f\" 3 20", find), 0);
    EXPECT_EQ(flags, 0);
    EXPECT_EQ(window, 0x20U);
    tellHub("reply 26 40 \"a b/f\" 0x11 1a2b");
    EXPECT_EQ(run(0x1a2b, 26, 1000, "\"f\" 0 20", find), 0x1a2b);
    EXPECT_EQ(flags, 17);
    EXPECT_EQ(window, 0x1a2bU);
    tellHub("reply 26 1004 nonsense");
    EXPECT_EQ(run(4, 26, 1000, "\"f\" 17 1a2b", find), 4) << "an answer that can't be scanned";
    EXPECT_EQ(flags, 17);
}

TEST_F(RequestTest, Launches) {
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path("/proc/self");
    const std::string here = "C:\\proc\\" + std::to_string(getpid());
    EXPECT_EQ(run(2, 18, 1040, "7 \"" + here + "\" Sketchel.exe -a \"b c\"",
                  [] { return ipcLaunch("Sketchel.exe", "-a \"b c\"", 0, 7); }),
              2);
    EXPECT_EQ(
        run(0, 71, 1040, "0 \"" + here + "\" p ", [] { return ipcLaunchWait("p", nullptr, 0, 0); }),
        0);
    const std::string text = "1 \"" + here + "\" p ";
    int status = -1;
    const auto launchAndFind = [&] {
        return static_cast<int>(ipcLaunchAndFind("p", nullptr, 0, 1, "P", &status));
    };
    EXPECT_EQ(run(2, 71, 1040, text, launchAndFind), 0);
    EXPECT_EQ(status, 1);
    EXPECT_EQ(run(0, 71, 1040, text, launchAndFind), 0);
    EXPECT_EQ(status, 2);
    EXPECT_EQ(seen().text, "P");
    tellHub("result 13 4660");
    EXPECT_EQ(run(0, 71, 1040, text, launchAndFind), 0x1234);
    EXPECT_EQ(status, 0);
    std::filesystem::current_path(before);
}

TEST_F(RequestTest, Posts) {
    EXPECT_EQ(run(4, 30, -1, "SW_SHOW", [] { return ipcCommand("SW_SHOW", 0); }), 4);
    EXPECT_EQ(run(
                  0, 30, -1, "go", [this] { return ipcCommand("go", m_window); }, m_window),
              1);
    EXPECT_EQ(run(
                  0, 50, -1, "two words -3",
                  [this] { return ipcStatus(m_window, "two words", -3); }, m_window),
              1);
}

TEST_F(RequestTest, WhatDoesNotFitIsNotSent) {
    const std::string fits(996, 'f');
    const std::string tooLong = fits + "ff";
    int isFree = 1;
    HWND holder = 0;
    EXPECT_EQ(ipcFindApp((tooLong + "ff").c_str()), 0U);
    EXPECT_NE(ipcFileOpen(tooLong.c_str(), 1, &isFree, &holder), 0) << "0 would grant it";
    EXPECT_EQ(isFree, 0);
    EXPECT_EQ(ipcFileClose(tooLong.c_str(), 1), 0);
    EXPECT_EQ(ipcSetEnv(("A=" + tooLong).c_str()), -1);
    EXPECT_EQ(ipcStatus(m_window, tooLong.c_str(), 1), 0);
    EXPECT_EQ(ipcLaunch(std::string(1000, 'p').c_str(), nullptr, 0, 1), 1);
    EXPECT_EQ(ipcLaunchWait(std::string(1000, 'p').c_str(), nullptr, 0, 1), 1);
    tellHub("result 16 1");
    EXPECT_EQ(ipcWatchName(fits.c_str()), 1);
    EXPECT_EQ(seen().text, "a" + fits) << "the only one that has reached the hub";
}

}  // namespace
}  // namespace juntora::test
