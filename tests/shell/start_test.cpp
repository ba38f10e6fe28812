// How a hub starts: alone on its desktop, with Planchet beside it.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/platform/Peer.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

using StartTest = HubProcess;

TEST_F(StartTest, ASecondHubLeavesTheFirstAlone) {
    startHub();
    const DWORD changes = GetWindowChangeCount(mainDialog());
    ChildProcess second("juntora", {}, {{}, "", true});
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(second.errors(), "");
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsIconic(mainDialog()));
    EXPECT_EQ(GetWindowChangeCount(mainDialog()), changes);
}

TEST_F(StartTest, AHubWaitsForTheOneThatStartsUntilThatIsReadyOrDead) {
    constexpr char LOCK[] = "TarvexVoltaraJuntoraStart16.6.0";
    Peer starting;
    starting.ask(std::string("mutex ") + LOCK);
    ASSERT_EQ(starting.ask(std::string("wait ") + LOCK + " 0"), WAIT_OBJECT_0);
    ChildProcess waiting("juntora");
    EXPECT_FALSE(waiting.wait(ChildProcess::Milliseconds(300)).has_value());
    EXPECT_EQ(hubWindow(), 0U);
    starting.process.kill();
    EXPECT_TRUE(waitFor([] { return hubWindow() != 0; }));
    const HANDLE lock = CreateMutexA(false, LOCK);
    EXPECT_EQ(WaitForSingleObject(lock, 5'000), WAIT_OBJECT_0) << "it is free again";
    CloseHandle(lock);
}

TEST_F(StartTest, ManyAtOnceLeaveOne) {
    for (int round = 0; round < 10; ++round) {
        std::vector<ChildProcess> hubs;
        hubs.reserve(4);
        for (int number = 0; number < 4; ++number) {
            hubs.emplace_back("juntora");
        }
        ASSERT_TRUE(waitFor([] { return hubWindow() != 0; }));
        int ended = 0;
        ASSERT_TRUE(waitFor([&] {
            ended = 0;
            for (ChildProcess& hub : hubs) {
                ended += !hub.isRunning();
            }
            return ended >= 3;
        }));
        EXPECT_EQ(ended, 3);
        ASSERT_NE(hubWindow(), 0U);
        SendMessageA(mainDialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
        for (ChildProcess& hub : hubs) {
            EXPECT_EQ(hub.wait(), 0);
        }
    }
}

TEST(StartWithoutDesktopTest, SaysWhyAndFails) {
    ChildProcess hub("juntora", {}, {{"JUNTORA_DESKTOP=not/a name"}, "", true});
    EXPECT_EQ(hub.wait(), 1);
    EXPECT_NE(hub.errors(), "");
}

/// A hub in a folder of its own, with a Planchet there or elsewhere that writes down how it was
/// called.
class PlanchetTest : public HubProcess {
protected:
    PlanchetTest() : m_folder(sandbox().temporaryFolder() + "/suite") {
        releasePlanchet();
        fs::create_directories(m_folder);
        fs::copy_file(ProgramFolder() + "/juntora", m_folder + "/juntora",
                      fs::copy_options::overwrite_existing);
    }
    ~PlanchetTest() override { fs::remove_all(m_folder); }

    void makePlanchet(const std::string& folder) const {
        fs::create_directories(folder);
        const std::string path = folder + "/planchet";
        std::ofstream(path) << "#!/bin/sh\n"
                               "printf '%s|' \"$0\" \"$@\" > "
                            << report() << ".new\nmv " << report() << ".new " << report() << "\n";
        fs::permissions(path, fs::perms::owner_all);
    }
    std::string report() const { return m_folder + "/report"; }

    void start(const std::vector<std::string>& arguments) {
        startHub(arguments, m_folder + "/juntora", {"PATH=" + m_folder + "/path:/usr/bin:/bin"});
    }

    /// What Planchet was called with since the last look.
    std::string calledWith() const {
        EXPECT_TRUE(waitFor([this] { return fs::exists(report()); }));
        std::ifstream file(report());
        std::string text{std::istreambuf_iterator<char>(file), {}};
        fs::remove(report());
        return text;
    }

    const std::string m_folder;
};

TEST_F(PlanchetTest, IsStartedFromTheHubsFolderWithTheHubsArguments) {
    makePlanchet(m_folder);
    start({"-V", "two words", "plain"});
    EXPECT_EQ(calledWith(), m_folder + "/planchet|-V|two words|plain|");
}

TEST_F(PlanchetTest, IsStartedFromThePathOtherwise) {
    makePlanchet(m_folder + "/path");
    start({"x"});
    EXPECT_EQ(calledWith(), m_folder + "/path/planchet|x|");
}

TEST_F(PlanchetTest, IsStartedByASignOnUnlessItRuns) {
    start({});
    ASSERT_TRUE(hubGoesOn()) << "the start at the opening has failed in silence";
    EXPECT_EQ(m_hub->errors(), "");
    makePlanchet(m_folder);
    const HWND tool = attach("Draftel");
    EXPECT_EQ(calledWith(), m_folder + "/planchet|");

    const HANDLE running = CreateMutexA(false, "TarvexVoltaraPlanchetFindWnd16.6.0");
    attach("Draftel");
    ASSERT_TRUE(hubGoesOn());
    CloseHandle(running);
    attach("Sketchel");
    EXPECT_EQ(calledWith(), m_folder + "/planchet|");
    EXPECT_FALSE(fs::exists(report())) << "once, not for the one that found it running";
    signOff(tool);
}

TEST_F(PlanchetTest, GetsALineThatFitsAndNoneThatDoesNot) {
    const std::size_t room = 1040 - 2 - (m_folder + "/Planchet.exe").size();
    for (const auto& [length, passed] : {std::pair{room, true}, std::pair{room + 1, false}}) {
        makePlanchet(m_folder);
        const std::string argument(length, 'a');
        start({argument});
        EXPECT_EQ(calledWith(), m_folder + "/planchet|" + (passed ? argument + "|" : "")) << length;
        SendMessageA(mainDialog(), WM_CLOSE, 0, 0);
        EXPECT_EQ(hubResult(), 0);
    }
}

}  // namespace
}  // namespace juntora::test
