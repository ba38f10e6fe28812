// Starting programs as the platform's calls do it.
#include "platform/kernel/process.h"

#include <dirent.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/CommandLine.h"
#include "platform/kernel/sync.h"
#include "tests/platform/PeerMessages.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using Words = std::vector<std::string>;

TEST(CommandLineTest, SplitsAtBlanksOutsideOfQuotes) {
    using kernel::splitCommandLine;
    EXPECT_EQ((Words{"tool", "a", "b c"}), splitCommandLine("tool a \"b c\""));
    EXPECT_EQ((Words{"C:\\my tools\\x.exe", "-v"}),
              splitCommandLine("\"C:\\my tools\\x.exe\"  -v "));
    EXPECT_EQ((Words{"t", "a\"b", "c\\d", "e\\", "f g"}),
              splitCommandLine("t a\\\"b c\\d \"e\\\\\" \"f g\""));
    EXPECT_EQ((Words{"t", "x\"y", ""}), splitCommandLine("t \"x\"\"y\" \"\""));
    EXPECT_EQ(Words{""}, splitCommandLine(""));
    EXPECT_EQ("-a  \"b c\" ", kernel::tailOf("\"C:\\my tools\\x\"   -a  \"b c\" "));
    const Words awkward{"t", "a b", "", "q\"q", "back\\", "end \\", "\\\\\"mix\\\""};
    EXPECT_EQ(awkward, splitCommandLine(kernel::joinCommandLine(awkward)));
}

TEST(EnvironmentTest, NamesDoNotMindCaseAndNothingRemoves) {
    EXPECT_EQ(0, PutEnvironment("Juntora_Test_Name=one"));
    EXPECT_STREQ("one", GetEnvironment("JUNTORA_TEST_NAME"));
    EXPECT_EQ(0, PutEnvironment("JUNTORA_TEST_NAME=two"));
    EXPECT_STREQ("two", GetEnvironment("Juntora_Test_Name"));
    EXPECT_EQ(0, PutEnvironment("juntora_test_name="));
    EXPECT_EQ(nullptr, GetEnvironment("JUNTORA_TEST_NAME"));
    EXPECT_EQ(-1, PutEnvironment("no equals sign"));
    EXPECT_EQ(-1, PutEnvironment("=no name"));

    setenv("juntora_twice", "a", 1);
    setenv("JUNTORA_TWICE", "b", 1);
    EXPECT_EQ(0, PutEnvironment("JUNTORA_TWICE="));
    EXPECT_EQ(nullptr, GetEnvironment("Juntora_Twice")) << "in whatever spelling";
}

TEST(EnvironmentTest, ThePathHasThePlatformsForm) {
    EXPECT_EQ(0, PutEnvironment("Path=C:\\TMP;c:/proc/sys;Q:\\none;/no such folder"));
    EXPECT_STREQ("/tmp:/proc/sys:/no such folder", std::getenv("PATH"));
    EXPECT_STREQ("C:\\tmp;C:\\proc\\sys;C:\\no such folder", GetEnvironment("path"));
    EXPECT_EQ(-1, PutEnvironment("PATH=C:\\no such;/folder")) << "nothing could be found any more";
    EXPECT_EQ(0, PutEnvironment("PATH=.:/usr/bin"));
    EXPECT_STREQ(".:/usr/bin", std::getenv("PATH"));
    EXPECT_EQ(0, PutEnvironment("PATH=/usr/bin:/bin"));
    EXPECT_STREQ("C:\\usr\\bin;C:\\bin", GetEnvironment("PATH"));
}

class ProcessTest : public TestDesktop {
protected:
    ProcessTest() { fs::create_directories(folder()); }

    static std::string folder() { return sandbox().runtimeFolder() + "/My Tools"; }
    static std::string peerPath() { return ProgramFolder() + "/platform_peer"; }

    /// A shell script that writes what it finds to a file and is waited for.
    static std::string outputOf(const std::string& body, const std::string& arguments = "",
                                const char* directory = nullptr) {
        const std::string script = folder() + "/Script One";
        const std::string output = folder() + "/output";
        std::ofstream(script) << "#!/bin/sh\n{ " << body << "; } > '" << output << "'\n";
        fs::permissions(script, fs::perms::owner_all);
        PROCESS_INFORMATION started{};
        EXPECT_TRUE(CreateProcessA(("\"" + script + "\" " + arguments).c_str(), directory, nullptr,
                                   &started));
        EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(started.hProcess, 10'000));
        CloseHandle(started.hProcess);
        std::ifstream file(output);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(ProcessTest, TheRawLineAndTheShowStateArrive) {
    fs::copy(peerPath(), folder() + "/Peer", fs::copy_options::overwrite_existing);
    const STARTUPINFOA startup{STARTF_USESHOWWINDOW, SW_HIDE};
    PROCESS_INFORMATION started{};
    ASSERT_TRUE(CreateProcessA(("\"" + folder() + "/PEER.EXE\" \"from  here\"  -x\"y").c_str(),
                               nullptr, &startup, &started))
        << "an .exe in any case of letters stands for the name without it";
    EXPECT_EQ(0U, WaitForInputIdle(started.hProcess, 10'000));
    const HWND window = FindWindowA(PEER_CLASS, "from  here");
    ASSERT_NE(0U, window) << "a process that is idle has made its window";
    EXPECT_EQ(1, SendMessageA(window, PEER_TELL_START, 0, 0));
    char told[100];
    GetWindowTextA(window, told, sizeof told);
    EXPECT_STREQ("\"from  here\"  -x\"y|0", told);
    EXPECT_TRUE(PostMessageA(window, PEER_QUIT, 0, 0));
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(started.hProcess, 10'000));
    CloseHandle(started.hProcess);
}

TEST_F(ProcessTest, StrangersGetWordsFolderAndTheThreeDescriptorsAlone) {
    const int leaked = dup(STDERR_FILENO);
    EXPECT_EQ("2|a b|c\n", outputOf("echo \"$#|$1|$2\"", "\"a b\" c"));
    EXPECT_EQ(fs::canonical(folder()).string() + "\n", outputOf("pwd -P", "", folder().c_str()));
    EXPECT_EQ(fs::canonical(folder()).string() + "\n",
              outputOf("pwd -P", "", ("C:" + sandbox().runtimeFolder() + "\\MY tools").c_str()))
        << "the folder in the platform's form and another case of letters";
    const std::string descriptors = outputOf("ls /proc/self/fd | wc -l");
    EXPECT_EQ(4, std::stoi(descriptors)) << "the three and the one that lists them";
    close(leaked);
}

TEST_F(ProcessTest, WhatCannotBeStartedSaysWhy) {
    PROCESS_INFORMATION started{};
    EXPECT_FALSE(CreateProcessA("no-such-program-anywhere", nullptr, nullptr, &started));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
    EXPECT_FALSE(CreateProcessA("", nullptr, nullptr, &started));
    EXPECT_FALSE(CreateProcessA("/bin/true", "/no/such/folder", nullptr, &started));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
    EXPECT_FALSE(CreateProcessA("/etc/passwd", nullptr, nullptr, &started));
    EXPECT_EQ(ERROR_ACCESS_DENIED, GetLastError()) << "not executable";
    EXPECT_FALSE(CreateProcessA("/no/such/folder/tool", nullptr, nullptr, &started));
    EXPECT_EQ(ERROR_PATH_NOT_FOUND, GetLastError());
    const std::string odd = folder() + "/odd";
    std::ofstream(odd) << "no program";
    fs::permissions(odd, fs::perms::owner_all);
    EXPECT_FALSE(CreateProcessA(("\"" + odd + "\"").c_str(), nullptr, nullptr, &started));
    EXPECT_EQ(ERROR_BAD_EXE_FORMAT, GetLastError());
}

TEST_F(ProcessTest, APathWithBlanksNeedsNoQuotes) {
    fs::copy(peerPath(), folder() + "/Two Peers");
    PROCESS_INFORMATION started{};
    ASSERT_TRUE(
        CreateProcessA((folder() + "/two peers.exe  a  b").c_str(), nullptr, nullptr, &started));
    EXPECT_EQ(0U, WaitForInputIdle(started.hProcess, 10'000));
    const HWND window = FindWindowA(PEER_CLASS, "a");
    EXPECT_EQ(1, SendMessageA(window, PEER_TELL_START, 0, 0));
    char told[100];
    GetWindowTextA(window, told, sizeof told);
    EXPECT_STREQ("a  b|10", told);
    PostMessageA(window, PEER_QUIT, 0, 0);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(started.hProcess, 10'000));
    CloseHandle(started.hProcess);
}

TEST_F(ProcessTest, EndedChildrenAreCollectedByTheLoop) {
    PROCESS_INFORMATION started{};
    ASSERT_TRUE(CreateProcessA("true", nullptr, nullptr, &started)) << "found along PATH";
    EXPECT_EQ(0U, WaitForInputIdle(started.hProcess, 10'000)) << "its end counts as idle";
    CloseHandle(started.hProcess);
    const std::string process = "/proc/" + std::to_string(started.dwProcessId);
    while (fs::exists(process)) {
        DispatchWaitingMessages();
    }
}

}  // namespace
}  // namespace juntora::test
