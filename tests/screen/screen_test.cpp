// The hub on a display, used as a person does: through a window manager, with mouse and keyboard.
#include <fstream>
#include <thread>

#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "platform/dialog/dialog.h"
#include "tests/screen/Display.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

constexpr char MAIN_TITLE[] = "Voltara Juntora";
constexpr char ACTIVITY_TITLE[] = "Application Activity";
constexpr char ABOUT_TITLE[] = "About Voltara Juntora";

class ScreenTest : public HubProcess {
protected:
    void SetUp() override {
        startHub({}, "juntora", m_display.environment());
        ASSERT_TRUE(waitFor([] { return FindScreen() != 0; }));
        // Its first picture of the desktop is there when the minimised window is.
        ASSERT_TRUE(waitFor([this] { return m_display.has(MAIN_TITLE); }));
    }

    /// Shows the main dialog; its window on the display.
    std::string showMain() {
        EXPECT_EQ(0, ChildProcess("juntoractl", {"show"}).wait());
        EXPECT_TRUE(waitFor([] { return IsIconic(mainDialog()) == 0; }));
        return m_display.visibleWindow(MAIN_TITLE);
    }
    void clickActivity(const std::string& window) { m_display.click(window, 1, 64, 34, 182, 58); }
    void clickMinimise(const std::string& window) { m_display.click(window, 1, 124, 34, 182, 58); }

    DWORD screenProcess() {
        DWORD process = 0;
        GetWindowThreadProcessId(FindScreen(), &process);
        return process;
    }

    /// Whether a picture of the window can be had, from whatever screen is or comes up.
    bool hasPicture(const std::string& title) {
        const std::string file = sandbox().runtimeFolder() + "/picture.png";
        ChildProcess tool("juntoractl", {"screenshot", "picture.png", "--window", title},
                          {m_display.environment(), sandbox().runtimeFolder()});
        std::string start(4, ' ');
        const bool isDone = tool.wait() == 0;
        std::ifstream(file, std::ios::binary).read(start.data(), 4);
        return isDone && start == "\x89PNG";
    }

    Display m_display{sandbox().runtimeFolder()};
};

TEST_F(ScreenTest, TheHubComesUpMinimisedAndIsPutAwayByItsCloseButton) {
    EXPECT_TRUE(IsIconic(mainDialog()));
    EXPECT_FALSE(m_display.shows(MAIN_TITLE));
    const std::string window = showMain();
    ASSERT_NE("", window);
    EXPECT_FALSE(IsIconic(mainDialog()));
    clickMinimise(window);
    EXPECT_TRUE(waitFor([] { return IsIconic(mainDialog()) != 0; }));
    EXPECT_TRUE(waitFor([this] { return !m_display.shows(MAIN_TITLE); }));

    // A restore by the window manager is the same as the show message.
    m_display.activate(window);
    EXPECT_TRUE(waitFor([] { return IsIconic(mainDialog()) == 0; }));
    m_display.press("Escape");
    EXPECT_TRUE(waitFor([] { return IsIconic(mainDialog()) != 0; })) << "escape puts it away";
}

TEST_F(ScreenTest, TheActivityListFollowsTheToolsAndIsOnlyHidden) {
    clickActivity(showMain());
    const std::string window = m_display.visibleWindow(ACTIVITY_TITLE);
    ASSERT_NE("", window);
    const HWND tool = attach("Draftel");
    EXPECT_TRUE(waitFor([] { return SendMessageA(listBox(), LB_GETCOUNT, 0, 0) == 1; }));
    // A click on the line comes back as the platform's message.
    EXPECT_TRUE(waitFor([&] {
        m_display.click(window, 1, 40, 23, 271, 122);
        return SendMessageA(listBox(), LB_GETCURSEL, 0, 0) == 0;
    }));
    EXPECT_TRUE(hasPicture(ACTIVITY_TITLE));

    m_display.click(window, 1, 239, 25, 271, 122);
    EXPECT_TRUE(waitFor([] { return IsWindowVisible(monitor()) == 0; }));
    EXPECT_TRUE(waitFor([this] { return !m_display.has(ACTIVITY_TITLE); }));
    EXPECT_TRUE(IsWindow(tool)) << "hiding it closes nothing";

    clickActivity(showMain());
    ASSERT_NE("", m_display.visibleWindow(ACTIVITY_TITLE));
    m_display.press("Escape");
    EXPECT_TRUE(waitFor([] { return IsWindowVisible(monitor()) == 0; }));
}

TEST_F(ScreenTest, TheWindowsOwnMenuOpensTheAboutBoxAndReturnClosesIt) {
    m_display.click(showMain(), 3, 20, 50, 182, 58);
    EXPECT_TRUE(waitFor([this] {
        m_display.press("a");
        return FindWindowA("#32770", ABOUT_TITLE) != 0;
    }));
    ASSERT_NE("", m_display.visibleWindow(ABOUT_TITLE));
    EXPECT_FALSE(IsWindowEnabled(mainDialog())) << "it is modal";
    m_display.press("Return");
    EXPECT_TRUE(waitFor([] { return FindWindowA("#32770", ABOUT_TITLE) == 0; }));
    EXPECT_TRUE(IsWindowEnabled(mainDialog()));
}

TEST_F(ScreenTest, TheCloseBoxEndsTheHubWhenNoToolIsAttached) {
    const HWND tool = attach("Draftel");
    const std::string window = showMain();
    m_display.activate(window);
    m_display.press("alt+F4");
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(m_display.shows(MAIN_TITLE)) << "refused while a tool is attached";

    signOff(tool);
    m_display.press("alt+F4");
    EXPECT_EQ(0, hubResult());
    EXPECT_TRUE(waitFor([this] { return !m_display.has(MAIN_TITLE); }));
}

TEST_F(ScreenTest, TheEndOfAScreenOrADisplayCostsTheHubNothing) {
    const HWND tool = attach("Draftel");
    clickActivity(showMain());
    ASSERT_NE("", m_display.visibleWindow(ACTIVITY_TITLE));
    ASSERT_EQ(0, kill(static_cast<pid_t>(screenProcess()), SIGKILL));
    ASSERT_TRUE(waitFor([] { return FindScreen() == 0; }));
    EXPECT_TRUE(hubGoesOn());

    EXPECT_TRUE(hasPicture(ACTIVITY_TITLE)) << "the next screen shows what is there";
    m_display.end();
    ASSERT_TRUE(waitFor([] { return FindScreen() == 0; }));
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsWindowVisible(monitor()));
    signOff(tool);
}

TEST_F(ScreenTest, AMessageBoxIsAnsweredByThePersonWhoSeesIt) {
    for (const std::string& setting : m_display.environment()) {
        putenv(strdup(setting.c_str()));
    }
    std::thread person([this] {
        if (!m_display.visibleWindow("Sketchel").empty()) {
            m_display.press("alt+n");
        }
    });
    EXPECT_EQ(IDNO, MessageBoxA(0, "Save the changes to \"board.opj\"?", "Sketchel",
                                MB_YESNOCANCEL | MB_ICONQUESTION));
    person.join();
}

TEST_F(HubProcess, WithoutADisplayTheHubRunsAndSaysNothing) {
    startHub({}, "juntora", {"DISPLAY=:65000", "JUNTORA_SCREEN=", "QT_QPA_PLATFORM=xcb"});
    const HWND tool = attach("Draftel");
    command(tool, "SW_SHOW");
    EXPECT_TRUE(hubGoesOn());
    signOff(tool);
    tick();
    EXPECT_EQ(0, hubResult());
    EXPECT_EQ("", m_hub->errors());
    EXPECT_EQ(0U, FindScreen());
}

}  // namespace
}  // namespace juntora::test
