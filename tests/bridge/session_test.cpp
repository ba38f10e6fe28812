// Launches that the bridge takes, and what becomes of them, with a library of tool objects.
#include "bridge/CAppReg.h"
#include "common/FileLock.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/bridge/BridgeFixture.h"

namespace juntora::test {
namespace {

using Lines = std::vector<std::string>;

class SessionTest : public BridgeFixture {
protected:
    static std::string commandLine(const char* tool) { return CAppReg().getCmdLine(tool); }
    static int launchTool(HWND client, const std::string& program) {
        return launch(client, "1 \"C:\\x\" \"" + program + '"');
    }
    static HWND standBy(const std::string& tool) {
        return FindWindowA(nullptr, ("m_pcwndDummy" + tool).c_str());
    }
};

TEST_F(SessionTest, TheSimulatorFromItsLaunchToItsEnd) {
    startHubWithLibrary();
    const HWND client = attachKeeper("Draftel");
    EXPECT_EQ(0U, find("Voltara")) << "the window alone is no row";
    EXPECT_EQ(0, launch(client, R"(1 "C:\any where" "C:\suite\VOLTARAAD.exe" a  b)"));
    EXPECT_EQ((Lines{"user.start"}), calls(1));
    ASSERT_TRUE(finds("Scopel"));
    const HWND voltara = find("Voltara");
    EXPECT_EQ(standBy("Voltara"), voltara);
    EXPECT_EQ(voltara, find("gatrel")) << "whichever of the three is asked for";
    EXPECT_EQ(standBy("Scopel"), find("SCOPEL"));
    EXPECT_EQ(voltara, find("Voltara;0"));
    EXPECT_EQ(" a  b ", commandLine("Voltara"));

    EXPECT_EQ(1, tell(client, voltara, "\"C:\\my boards\\x.sim\" ignored"));
    EXPECT_EQ(
        (Lines{"run.setNotify off 0", "run.loadFile C:\\my boards\\x.sim 1", "run.setNotify on 3",
               "user.closeFile", "user.openFile C:\\my boards\\x.sim", "user.afterOpen 0"}),
        calls(6));
    EXPECT_EQ(0, tell(client, voltara, ""));
    EXPECT_EQ(0, tell(client, voltara, "x", IPC_STATUS)) << "it is no command";
    EXPECT_EQ(1, tell(client, find("Scopel"), "x", IPC_STATUS));
    EXPECT_EQ(1, tell(client, find("Scopel"), "add trace")) << "without a link it goes nowhere";

    EXPECT_EQ(0, launch(client, R"(1 "C:\x" "gatrel"  )"));
    EXPECT_EQ((Lines{"user.start", "user.end"}), calls(2)) << "the one that runs is brought up";
    EXPECT_EQ(" a  b ", commandLine("Voltara")) << "no arguments leave the old ones";
    EXPECT_EQ(0U, find("Voltara;1"));

    signOff(client);
    EXPECT_EQ((Lines{"user.end", "run.setNotify off 0", "run.end"}), calls(3));
    EXPECT_TRUE(loses("Voltara"));
    EXPECT_EQ(0U, find("Scopel"));
    EXPECT_TRUE(IsWindow(voltara)) << "and it can be launched again";
    const HWND next = attach("Draftel");
    EXPECT_EQ(0, launchTool(next, "scopel"));
    EXPECT_TRUE(finds("Voltara"));
}

TEST_F(SessionTest, WhatALaunchMustLookLike) {
    startHubWithLibrary();
    const HWND client = attach("Draftel");
    const std::string longest(259, 'd');
    struct Row {
        std::string text;
        bool isTaken;
    };
    const Row rows[] = {
        {R"(1 "C:\x" "C:\x\modelar")", true},
        {R"(0 "C:\x" "dorvane.exe" x)", true},
        {R"(-5 ""C:\x" "" Modelar"x)", true},
        {R"(1 "C:\x"" "modelar")", false},
        {"1 \"" + longest + "\" \"modelar\"", true},
        {"1 \"" + longest + "d\" \"modelar\"", false},
        {R"(1 "C:\x" ")" + longest.substr(8) + "\\modelar\"", true},
        {R"(1 "C:\x" ")" + longest.substr(7) + "\\modelar\"", false},
        {R"(1 "C:\x" "modelar2")", false},
        {R"(1 "C:\x" "modelar)", false},
        {R"(1 "C:\x" modelar)", false},
        {R"(1 "C:\x")", false},
        {R"(1 "" "modelar")", false},
        {R"("C:\x" "modelar")", false},
        {R"(1 C:\x "modelar")", false},
        {"", false},
    };
    for (const Row& row : rows) {
        const int result = launch(client, row.text);
        if (row.isTaken) {
            EXPECT_EQ(0, result) << row.text;
            EXPECT_EQ((Lines{"modelar.start", "modelar.end"}), calls(2)) << row.text;
        }
    }
    EXPECT_EQ(0, launchTool(client, "wavend"));
    EXPECT_EQ((Lines{"wavend.start", "wavend.end"}), calls(2)) << "and none but these was taken";
}

TEST_F(SessionTest, TheEditors) {
    startHubWithLibrary();
    const HWND client = attach("Draftel");
    launch(client, R"(1 "C:\x" "modelar" one.lib)");
    ASSERT_TRUE(finds("Dorvane"));
    const HWND modelar = find("Dorvane");
    EXPECT_EQ(" one.lib ", commandLine("Modelar Editor"));
    launchTool(client, "dorvane");
    EXPECT_TRUE(finds("Dorvane;1")) << "one more row";
    EXPECT_EQ(modelar, find("Dorvane;1"));
    calls(4);
    const std::pair<std::string, std::string> commands[] = {
        {"File OpenLib\nC:\\a b.lib", "modelar.openLibrary C:\\a b.lib"},
        {"file saveaslib\n\n\"C:\\new.lib\"", "modelar.saveLibraryAs C:\\new.lib"},
        {"Part Get_Part\nR1", "modelar.getPart R1 2"},
        {"Part Create_Part\nR2\nmore", "modelar.createPart R2 2"},
        {"Part Copy_Part\nto\nfrom\nin", "modelar.copyPart from in to 2"},
        {"Part Copy_Part\nto\nfrom", ""},
        {"Part Get_Part", ""},
        {"", ""},
        {std::string("Part Get_Part\n") + std::string(5'000, 'n'),
         "modelar.getPart " + std::string(5'000, 'n') + " 2"},
    };
    for (const auto& [text, call] : commands) {
        EXPECT_NE(0, tell(client, modelar, text)) << text;
        EXPECT_EQ(call.empty() ? Lines{"modelar.end"} : (Lines{call, "modelar.end"}),
                  calls(call.empty() ? 1 : 2))
            << text;
    }
    EXPECT_EQ(0, tell(client, modelar, "x", IPC_STATUS));

    launchTool(client, "wavend");
    ASSERT_TRUE(finds("Wavend"));
    EXPECT_NE(0, tell(client, find("Wavend"), "any text\nat all"));
    EXPECT_EQ(
        (Lines{"wavend.start", "wavend.end", "wavend.command any text", "at all", "wavend.end"}),
        calls(5));
    signOff(client);
    EXPECT_TRUE(loses("Dorvane"));
    EXPECT_TRUE(loses("Wavend"));
}

TEST_F(SessionTest, Tunara) {
    startHubWithLibrary();
    const HWND client = attachKeeper("Draftel");
    launchTool(client, "tunara");
    ASSERT_TRUE(finds("Tunara"));
    const HWND tunara = find("Tunara");
    const auto opens = [](const std::string& file) {
        return Lines{"tunara.setNotify off 0", "tunara.openFile [" + file + "] [" + file + "]",
                     "tunara.setNotify on 0"};
    };
    EXPECT_EQ(opens(""), calls(3));
    EXPECT_EQ(0, tell(client, tunara, "File Open"));
    EXPECT_EQ(0, tell(client, tunara, "File Close\nC:\\x"));
    EXPECT_EQ(1, tell(client, tunara, "FILE OPEN\n\"C:\\a b\\x-1\""));
    EXPECT_EQ(opens("C:\\a b\\x-1"), calls(3));
    EXPECT_EQ((Arrived{30, tunara, "OPTPARAM \"C:\\a b\\x-1\""}), next());
    EXPECT_EQ(1, tell(client, tunara, "File Open\nx-3")) << "a code that means nothing";
    EXPECT_EQ(opens("x-3"), calls(3));
    launchTool(client, "tunara");
    EXPECT_EQ(opens(""), calls(3)) << "it stays, without its file";
    EXPECT_EQ(1, tell(client, tunara, "File Open\nx-2"));
    EXPECT_EQ(opens("x-2"), calls(3));
    EXPECT_EQ((Lines{"tunara.end"}), calls(1)) << "it has told of its end";
    EXPECT_TRUE(loses("Tunara"));
    EXPECT_EQ(0, tell(client, tunara, "File Open\nx"));
}

TEST_F(SessionTest, WithoutALinkTheRunItselfReports) {
    startHubWithLibrary();
    const HWND client = attachKeeper("Draftel");
    launchTool(client, "voltara");
    ASSERT_TRUE(finds("Scopel"));
    const HWND voltara = find("Voltara");
    for (const auto& [flags, code] : {std::pair{1, 0}, {2, 2}, {3, 0}}) {
        const std::string file = "C:\\x y-" + std::to_string(flags);
        EXPECT_EQ(1, tell(client, voltara, '"' + file + '"'));
        EXPECT_EQ((Arrived{50, voltara, file + " " + std::to_string(code)}), next());
    }
    const HWND other = attachKeeper("Draftel");
    EXPECT_EQ(1, tell(other, voltara, "C:\\x-1"));
    EXPECT_EQ(50, next().opcode);
    signOff(client);
    EXPECT_NE(0U, find("Voltara")) << "it is the other's now";
    signOff(other);
    EXPECT_TRUE(loses("Voltara"));
}

TEST_F(SessionTest, ObjectsThatAreRefusedLeaveTheToolsAway) {
    for (const std::string fault : {"none", "start"}) {
        startHubWithLibrary(fault);
        const HWND client = attach("Draftel");
        for (const std::string tool : {"voltara", "modelar", "wavend"}) {
            EXPECT_EQ(0, launchTool(client, tool)) << "it has been taken";
        }
        EXPECT_TRUE(hubGoesOn());
        for (const std::string tool : {"Voltara", "Scopel", "Dorvane", "Wavend"}) {
            EXPECT_EQ(0U, find(tool)) << fault;
        }
        signOff(client);
        tick();
        EXPECT_EQ(0, hubResult());
    }
}

TEST_F(SessionTest, ClosingAStandByWindowEndsItsSession) {
    startHubWithLibrary();
    const HWND client = attach("Draftel");
    const auto launchAll = [&] {
        for (const std::string tool : {"voltara", "tunara", "modelar", "wavend"}) {
            launchTool(client, tool);
        }
        return finds("Scopel") && finds("Tunara") && finds("Dorvane") && finds("Wavend");
    };
    ASSERT_TRUE(launchAll());
    SendMessageA(standBy("Scopel"), WM_CLOSE, 0, 0);
    EXPECT_TRUE(loses("Voltara"));
    EXPECT_TRUE(waitFor([] { return standBy("Voltara") == 0 && standBy("Scopel") == 0; }));
    EXPECT_NE(0U, find("Tunara"));
    EXPECT_NE(0, launch(client, R"(1 "C:\x" "C:\nowhere\voltara")"))
        << "the hub looks for the program now";

    EXPECT_EQ(0, command(client, "JUNTORA_CLOSE_ALL_APPS"));
    for (const std::string tool : {"Tunara", "Dorvane", "Wavend"}) {
        EXPECT_TRUE(loses(tool));
    }
    EXPECT_TRUE(waitFor([] {
        return standBy("Tunara") == 0 && standBy("Modelar") == 0 && standBy("Wavend") == 0;
    }));
    EXPECT_TRUE(hubGoesOn());
    EXPECT_EQ(0, launchTool(client, "modelar"));
    EXPECT_TRUE(finds("Dorvane")) << "the editors' windows are made again";
    signOff(client);
    EXPECT_TRUE(loses("Dorvane"));
    tick();
    EXPECT_EQ(0, hubResult());
}

TEST_F(SessionTest, ASessionGoesOnForWhoAskedLast) {
    startHubWithLibrary();
    const std::pair<std::string, std::string> tools[] = {
        {"voltara", "Voltara"}, {"tunara", "Tunara"}, {"modelar", "Dorvane"}, {"wavend", "Wavend"}};
    for (const auto& [program, row] : tools) {
        const HWND first = attach("Draftel");
        const HWND second = attach("Draftel");
        launchTool(first, program);
        signOff(first);
        launchTool(second, program);
        EXPECT_TRUE(hubGoesOn());
        ASSERT_TRUE(finds(row));
        EXPECT_TRUE(hubGoesOn());
        EXPECT_NE(0U, find(row)) << "the second one wants it";
        DestroyWindow(second);
        tick();
        EXPECT_TRUE(loses(row)) << "nobody who lives wants it";
    }
    tick();
    EXPECT_EQ(0, hubResult());
}

TEST_F(SessionTest, AllThatAreClosedAtOnceGo) {
    startHubWithLibrary();
    const HWND client = attach("Draftel");
    for (const std::string tool : {"tunara", "modelar", "wavend", "voltara"}) {
        launchTool(client, tool);
    }
    ASSERT_TRUE(finds("Tunara") && finds("Dorvane") && finds("Wavend") && finds("Scopel"));
    EXPECT_EQ(0, command(client, "JUNTORA_CLOSE_ALL_APPS"));
    for (const std::string row : {"Voltara", "Scopel", "Tunara", "Dorvane", "Wavend"}) {
        EXPECT_TRUE(loses(row)) << row;
    }
    signOff(client);
    tick();
    EXPECT_EQ(0, hubResult());
}

TEST_F(SessionTest, TheHubEndsWithAllItsSessions) {
    startHubWithLibrary();
    const HWND client = attach("Draftel");
    launch(client, R"(1 "C:\x" "voltara" x)");
    launchTool(client, "tunara");
    ASSERT_TRUE(finds("Tunara"));
    // Another program takes the rows away; the sessions run on.
    for (const char* tool : {"Voltara", "Scopel", "Tunara"}) {
        ipcSelfId = find(tool);
        char reply[8];
        int capacity = sizeof reply;
        ipcSend(IPC_SIGN_OFF, "", 0, reply, &capacity);
    }
    signOff(client);
    tick();
    EXPECT_EQ(0, hubResult());
    const std::string said = m_hub->readAll();
    EXPECT_NE(std::string::npos, said.find("user.end"));
    EXPECT_NE(std::string::npos, said.find("tunara.end"));
    EXPECT_EQ("", commandLine("Voltara")) << "command lines do not outlive the hub";
}

TEST_F(SessionTest, FilesOfTheToolsAreFoundByTheirLocks) {
    startHubWithLibrary();
    const HWND client = attach("Draftel");
    launchTool(client, "modelar");
    ASSERT_TRUE(finds("Dorvane"));
    const HWND dorvane = find("Dorvane");
    ipcSelfId = client;
    const auto holderFor = [](const char* file, int access) {
        int isFree = 0;
        return static_cast<HWND>(ipcFileOpen(file, access, &isFree, nullptr));
    };
    FileLock reader("C:\\tmp\\a.LIB");
    ASSERT_EQ(0, reader.lock(nullptr, 0, LOCK_MODE_READ));
    EXPECT_EQ(dorvane, holderFor("C:\\tmp\\a.LIB", 2));
    EXPECT_EQ(0U, holderFor("C:\\tmp\\a.LIB", 1)) << "readers bear readers";
    const auto watcherOf = [](const char* file, int flags, HWND window) {
        return ipcFileFindFlags(file, &flags, &window);
    };
    FileLock watcher("C:\\tmp\\b.lib");
    ASSERT_EQ(0, watcher.setMonitored(1));
    EXPECT_EQ(dorvane, watcherOf("C:\\tmp\\b.lib", 1, 0));
    EXPECT_EQ(dorvane, watcherOf("C:\\tmp\\b.lib", 1, dorvane));
    EXPECT_EQ(0U, watcherOf("C:\\tmp\\b.lib", 2, 0));
    EXPECT_EQ(0U, watcherOf("C:\\tmp\\b.lib", 1, client));
    EXPECT_EQ(0U, watcherOf("C:\\tmp\\b.lib.txt", 1, 0));
}

}  // namespace
}  // namespace juntora::test
