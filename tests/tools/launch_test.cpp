// Programs that the hub starts for tools.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/platform/PeerMessages.h"
#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class LaunchTest : public ToolsTest {
protected:
    LaunchTest() {
        fs::create_directories(folder());
        options.folder = folder();
        options.keepErrors = true;
    }

    static std::string folder() { return sandbox().runtimeFolder() + "/My Boards"; }

    /// A program that writes a line to a pipe beside it.
    static std::string teller(const std::string& body) {
        std::string path = folder() + "/Tell Me";
        std::ofstream(path) << "#!/bin/sh\necho \"" << body << "\" > \"$0.told\"\n";
        fs::permissions(path, fs::perms::owner_all);
        mkfifo((path + ".told").c_str(), 0600);
        return path;
    }
    /// Waits for what it writes.
    static std::string told() {
        std::ifstream pipe(folder() + "/Tell Me.told");
        std::string line;
        std::getline(pipe, line);
        return line;
    }

    ChildProcess::Options options;
};

TEST_F(LaunchTest, AToolIsStartedInTheAskersFolderAndGreetsIt) {
    Tool tool("Sketchel", options);
    const std::string program = teller("$PWD|$PARENT|$#|$1|$2|$3");
    EXPECT_EQ(tool.result("launch \"" + program + "\" \"a b\" c \"say \"\"x\"\"\""), 0);
    EXPECT_EQ(told(), fs::canonical(folder()).string() + "|" + tool.id() + "|3|a b|c|say \"x\"");
    EXPECT_EQ(tool.result("launch \"Tell Me.exe\" x"), 0) << "found in the asker's folder";
    EXPECT_EQ(told().substr(0, folder().size()), fs::canonical(folder()).string());

    Tool other("Kalset");
    EXPECT_EQ(tool.result("launch-wait draftel.EXE"), 0) << "found in the hub's";
    EXPECT_NE(other.result("find Draftel"), 0) << "it has been waited for";
    const json greeting = tool.next("record");
    EXPECT_EQ(greeting["opcode"], 15);
    EXPECT_EQ(tool.ask("find Draftel")["id"], greeting["sender"]);
    EXPECT_NE(tool.result("command " + greeting["sender"].get<std::string>() + " hello"), 0);
}

TEST_F(LaunchTest, WhatItsEnvironmentIsToldLater) {
    Tool tool("Sketchel", options);
    const std::string program = teller("$JUNTORA_PROBE");
    EXPECT_EQ(tool.result("setenv JUNTORA_PROBE=one  two"), 0);
    EXPECT_EQ(tool.result("launch \"" + program + "\""), 0);
    EXPECT_EQ(told(), "one  two");
    EXPECT_EQ(tool.result("setenv juntora_probe="), 0);
    EXPECT_EQ(tool.result("launch \"" + program + "\""), 0);
    EXPECT_EQ(told(), "");
    EXPECT_EQ(tool.result("setenv no equals sign"), -1);
    EXPECT_EQ(tool.result("setenv =value"), -1);
}

TEST_F(LaunchTest, WhatCannotBeStartedSaysWhy) {
    Tool tool("Sketchel", options);
    EXPECT_EQ(tool.result("launch no-such-program"), 2);
    EXPECT_EQ(tool.result("launch /no/such/folder/program"), 3);
    EXPECT_EQ(tool.result("launch /etc/passwd"), 5);
    std::ofstream(folder() + "/odd") << "no program";
    fs::permissions(folder() + "/odd", fs::perms::owner_all);
    EXPECT_EQ(tool.result("launch ./odd"), 193);
    EXPECT_EQ(tool.result("launch " + std::string(990, 'x')), 1);
    const std::string far = "1 \"" + folder() + std::string(300, '/') + "\" ";
    EXPECT_EQ(tool.result("send 18 0 2 " + far + "true"), 0) << "a long way to the same folder";
    for (const char* text : {"", "1", "1 /tmp", "1 \"/tmp\"", "1 \"/tmp", "1 \"\" \"/tmp\" true",
                             "1 \" \" \"/tmp\" true", "x \"/tmp\" true", "1 /tmp true \"x\"",
                             "\"\"\"\"", "99999999999 \"/tmp\" true"}) {
        EXPECT_EQ(tool.result(std::string("send 18 0 2 ") + text), 2) << text;
        EXPECT_EQ(tool.result(std::string("send 71 0 2 ") + text), 2) << text;
    }
    EXPECT_EQ(tool.result("send 18 0 2 1 /no/such/folder   true"), 0) << "it goes on where it is";
    EXPECT_EQ(tool.result("find Sketchel"), std::stoi(tool.id(), nullptr, 16));
}

TEST_F(LaunchTest, FromTheCommandLine) {
    EXPECT_EQ(control({"launch", "true"}).code, 3);
    Tool tool("Sketchel", options);
    const std::string program = teller("$#|$1");
    EXPECT_EQ(control({"launch", program, "--an", "x y"}).code, 0);
    EXPECT_EQ(told(), "2|--an");
    const Outcome outcome = control({"launch", "--minimised", "--json", "no-such-program"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(json::parse(outcome.output)["result"], 2);
    EXPECT_NE(control({"launch", "/etc/passwd"}).errors.find("no program"), std::string::npos);
    EXPECT_EQ(control({"launch"}).code, 2);
}

TEST_F(LaunchTest, ShowsItselfAsItWasAskedTo) {
    Tool tool("Sketchel", options);
    const auto shownAs = [](const std::string& title) {
        const HWND window = FindWindowA(PEER_CLASS, title.c_str());
        EXPECT_EQ(SendMessageA(window, PEER_TELL_START, 0, 0), 1);
        char told[60] = "";
        GetWindowTextA(window, told, sizeof told);
        return std::string(told);
    };
    const std::string peer = ProgramFolder() + "/platform_peer";
    EXPECT_EQ(control({"launch", "--wait", "--minimised", peer, "small"}).code, 0);
    EXPECT_EQ(shownAs("small"), "small|2");
    EXPECT_EQ(control({"launch", "--wait", peer, "large"}).code, 0);
    EXPECT_EQ(shownAs("large"), "large|1");
}

// What has been started and ended is not left for the hub to collect at its own end.
TEST_F(LaunchTest, LeavesNoZombies) {
    Tool tool("Sketchel", options);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(tool.result("launch true"), 0);
    }
    DWORD hub = 0;
    ASSERT_TRUE(ipcFindHub() && GetWindowThreadProcessId(ipcHubWindow, &hub));
    const std::string zombies =
        "until ! grep -l '^State:.Z' $(grep -l \"^PPid:.$0$\" "
        "/proc/[0-9]*/status) /dev/null; do :; done; echo none";
    ChildProcess look("/bin/sh", {"-c", zombies, std::to_string(hub)});
    EXPECT_EQ(look.readLineWith("none").value_or("some"), "none");
}

}  // namespace
}  // namespace juntora::test
