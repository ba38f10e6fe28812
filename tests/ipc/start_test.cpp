// Where a tool that finds no hub looks for one, and how it starts it.
#include <filesystem>
#include <fstream>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

/// A tool in a folder of its own, so that it finds no hub but the one that the test puts somewhere.
class StartTest : public TestDesktop {
protected:
    StartTest() {
        std::filesystem::remove_all(m_base);
        std::filesystem::create_directories(m_base + "/tools");
        std::filesystem::create_directories(m_base + "/path");
        std::filesystem::copy_file(ProgramFolder() + "/test_tool", m_tool);
    }

    void install(const std::string& program, const std::string& folder) {
        std::filesystem::create_symlink(program, m_base + folder + "/juntora");
    }
    void installHub(const std::string& folder) {
        install(ProgramFolder() + "/ipc_fake_hub", folder);
    }
    /// What the tool prints.
    std::string run(const std::string& does, const std::vector<std::string>& arguments = {}) {
        // The current folder is looked into as well.
        ChildProcess tool(
            m_tool, arguments,
            {{"TOOL_DOES=" + does, "FAKE_HUB_NOTE=" + m_note, "PATH=" + m_base + "/path"},
             m_base,
             true});
        std::string line = tool.readLine().value_or("");
        EXPECT_EQ(tool.wait(), 0);
        m_errors = tool.errors();
        return line;
    }
    /// Show state and arguments with which the hub was started.
    std::string note() const {
        std::ifstream file(m_note);
        std::string line;
        std::getline(file, line);
        return line;
    }

    std::string m_base = sandbox().runtimeFolder() + "/start";
    std::string m_tool = m_base + "/tools/tool";
    std::string m_note = m_base + "/note";
    std::string m_errors;
};

TEST_F(StartTest, TheHubBesideTheToolIsStartedHidden) {
    installHub("/tools");
    EXPECT_EQ(run("attach", {"-a", "file.opj"}), "[Starter;0] -1");
    EXPECT_EQ(note(), "0 -a file.opj ");
    EXPECT_EQ(m_errors, "");
}

TEST_F(StartTest, OrTheOneOnThePath) {
    installHub("/path");
    EXPECT_EQ(run("start"), "1");
    EXPECT_EQ(note(), "0 ");
    std::filesystem::remove(m_base + "/path/juntora");
    EXPECT_EQ(run("start"), "1") << "it runs already";
}

// The line, an argument and two bytes more come to 1,040 at most; the first argument that does not
// fit ends the line.
TEST_F(StartTest, ArgumentsThatFit) {
    installHub("/tools");
    const std::string first(1040 - (m_base + "/tools/Juntora.exe ").size() - 104, 'a');
    const std::string fits(101, 'b');
    EXPECT_EQ(run("start", {first, fits, "c"}), "1");
    EXPECT_EQ(note(), "0 " + first + " " + fits + " ");
    sandbox().endProcesses();
    EXPECT_EQ(run("start", {first, fits + "b", "c"}), "1");
    EXPECT_EQ(note(), "0 " + first + " ");
}

TEST_F(StartTest, ThereIsNoHubToStart) {
    EXPECT_EQ(run("start"), "0");
    EXPECT_EQ(m_errors, "");
    EXPECT_EQ(run("attach"), "[] -1");
    EXPECT_NE(m_errors.find("the program lies outside of an installation"), std::string::npos);
    EXPECT_NE(m_errors.find("[Error 2]\n    \n    (answered \"OK\""), std::string::npos);
    // With an installation around it the box has a text.
    setenv("JUNTORA_ROOT", (ProgramFolder() + "/..").c_str(), 1);
    EXPECT_EQ(run("attach"), "[] -1");
    EXPECT_TRUE(m_errors.starts_with("[Error 2]\n    ERROR(TVCOMMN-1821):  Juntora, the hub "))
        << m_errors;
    unsetenv("JUNTORA_ROOT");
}

TEST_F(StartTest, AQuitEndsTheWaitForAHub) {
    install("/bin/true", "/tools");  // It never shows a window.
    EXPECT_EQ(run("quit"), "[] 1");
}

}  // namespace
}  // namespace juntora::test
