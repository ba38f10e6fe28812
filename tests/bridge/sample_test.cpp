// The bridge and the sample tools, each a process of its own.
#include <chrono>
#include <csignal>
#include <fstream>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "tests/bridge/BridgeFixture.h"

namespace juntora::test {
namespace {

class SampleTest : public BridgeFixture {
protected:
    void SetUp() override {
        for (const char* tool : {"voltara", "tunara", "modelar", "wavend"}) {
            ASSERT_EQ(0, ChildProcess(tool, {"-Regserver"}).wait()) << tool;
        }
        m_log = sandbox().runtimeFolder() + "/log";
        startHub({}, "juntora", {"JUNTORA_SAMPLE_LOG=" + m_log});
        m_client = attachKeeper("Draftel");
    }
    bool startSimulator() {
        launch(m_client, R"(1 "C:\x" "voltara" board.sim)");
        return finds("Scopel") && says("the hub listens");
    }
    /// Has a tool open a file that says what the tool is to do.
    int open(const std::string& script, const std::string& row = "Voltara",
             const std::string& command = "") {
        const std::string file = sandbox().runtimeFolder() + "/script";
        std::ofstream(file) << script;
        return tell(m_client, find(row), command + '"' + file + '"');
    }
    bool says(const std::string& text) const {
        return waitFor([&] {
            std::ifstream log(m_log);
            const std::string all(std::istreambuf_iterator<char>(log), {});
            return all.find(text) != std::string::npos;
        });
    }
    /// The simulator's process.
    pid_t simulator() const {
        ChildProcess finder("/usr/bin/pgrep",
                            {"-u", std::to_string(getuid()), "-n", "-x", "voltara"});
        return std::atoi(finder.readLine().value_or("0").c_str());
    }

    std::string m_log;
    HWND m_client = 0;
};

TEST_F(SampleTest, ASessionFromEndToEnd) {
    ASSERT_TRUE(startSimulator());
    EXPECT_TRUE(says("voltara: comes up, command line [ board.sim ]"));
    const HWND voltara = find("Voltara");
    ChildProcess sessions("juntoractl", {"sessions"});
    EXPECT_NE(std::string::npos,
              sessions.readLineWith("subscribed").value_or("").find("Draftel;0"));
    EXPECT_EQ(1, open("data d.dat\nprofile p.sim\nchange 4\nchange 3\nchange 7\nchange 9\n"));
    EXPECT_EQ((Arrived{30, voltara, "StartScopelFile \"d.dat\""}), next());
    EXPECT_EQ((Arrived{50, voltara, "\"p.sim\" 0"}), next());
    EXPECT_EQ("OKtoAddTraces \"d.dat\"", next().text);
    EXPECT_TRUE(loses("Voltara"));
    EXPECT_TRUE(says("the hub listens no more"));

    launch(m_client, R"(1 "C:\x" "modelar")");
    ASSERT_TRUE(finds("Dorvane"));
    tell(m_client, find("Dorvane"), "Part Copy_Part\nto\nfrom\nin");
    EXPECT_TRUE(says("modelar: copies a part: from, in, to"));
    launch(m_client, R"(1 "C:\x" "wavend")");
    ASSERT_TRUE(finds("Wavend"));
    tell(m_client, find("Wavend"), "sweep");
    EXPECT_TRUE(says("wavend: sweep"));
    launch(m_client, R"(1 "C:\x" "tunara")");
    ASSERT_TRUE(finds("Tunara"));
    EXPECT_EQ(1, open("notify 1\nnotify 2\n", "Tunara", "File Open\n"));
    EXPECT_EQ(30, next().opcode);
    EXPECT_TRUE(loses("Tunara"));
}

TEST_F(SampleTest, ASimulatorThatDiesEndsItsSession) {
    for (const std::string script :
         {"die\n", "change 4\ndie\n", "data d\nchange 3\nwait 20\ndie\n"}) {
        ASSERT_TRUE(startSimulator());
        EXPECT_EQ(1, open(script));
        EXPECT_TRUE(loses("Voltara")) << script;
        EXPECT_TRUE(hubGoesOn());
    }
    launch(m_client, R"(1 "C:\x" "tunara")");
    ASSERT_TRUE(finds("Tunara"));
    EXPECT_EQ(1, open("die\n", "Tunara", "File Open\n"));
    EXPECT_TRUE(loses("Tunara"));
    signOff(m_client);
    tick();
    EXPECT_EQ(0, hubResult());
}

TEST_F(SampleTest, ASimulatorThatHangsHoldsUpNobodyElse) {
    ASSERT_TRUE(startSimulator());
    const HWND scopel = find("Scopel");
    EXPECT_EQ(1, open("hang 3000\n"));
    ASSERT_TRUE(says("voltara: opens"));
    EXPECT_EQ(1, tell(m_client, scopel, "the hub waits for this"));
    const auto start = std::chrono::steady_clock::now();
    auto longest = std::chrono::steady_clock::duration::zero();
    int asked = 0;
    while (std::chrono::steady_clock::now() - start < std::chrono::seconds(2)) {
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(1, ipcIsAlive(m_client));
        longest = std::max(longest, std::chrono::steady_clock::now() - before);
        ++asked;
    }
    EXPECT_GT(asked, 100);
    EXPECT_LT(longest, std::chrono::seconds(1));
    PostMessageA(mainDialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(says("scopel: the hub waits for this"));
    EXPECT_TRUE(hubGoesOn());
}

TEST_F(SampleTest, AToolThatIsStartedAndSignsOffAtOnceLeavesNothing) {
    for (int i = 0; i < 5; ++i) {
        const HWND tool = attach("Sketchel");
        launch(tool, R"(1 "C:\x" "voltara")");
        signOff(tool);
    }
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(loses("Voltara"));
    signOff(m_client);
    EXPECT_TRUE(waitFor([this] {
        tick();
        return m_hub->wait(ChildProcess::Milliseconds(0)).has_value();
    }));
}

TEST_F(SampleTest, ALibraryThatCannotBeLoadedIsToldOf) {
    signOff(m_client);
    tick();
    ASSERT_EQ(0, hubResult());
    startHub({}, "juntora", {"JUNTORA_TOOL_OBJECTS=/nowhere.so"});
    const HWND client = attach("Draftel");
    launch(client, R"(1 "C:\x" "wavend")");
    EXPECT_TRUE(finds("Wavend")) << "the tool is reached all the same";
    EXPECT_TRUE(waitFor([&] {
        m_hub->readLine(ChildProcess::Milliseconds(0));
        return m_hub->errors().find("/nowhere.so") != std::string::npos;
    }));
}

}  // namespace
}  // namespace juntora::test
