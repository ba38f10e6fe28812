// The hub on a display, used as a person does: through a window manager, with mouse and keyboard.
#include <fstream>
#include <functional>
#include <thread>
#include <utility>

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
constexpr char MENU_TITLE[] = "Menu of Voltara Juntora";
constexpr char ABOUT_TITLE[] = "About Voltara Juntora";

/// Width and height of a PNG, by its header.
std::pair<unsigned, unsigned> sizeOf(const std::string& png) {
    const auto number = [&](std::size_t at) {
        unsigned value = 0;
        for (std::size_t i = at; i < at + 4 && i < png.size(); ++i) {
            value = value << 8 | static_cast<unsigned char>(png[i]);
        }
        return value;
    };
    return {number(16), number(20)};
}

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

    void killScreen() {
        DWORD process = 0;
        GetWindowThreadProcessId(FindScreen(), &process);
        ASSERT_NE(0U, process);
        ASSERT_EQ(0, kill(static_cast<pid_t>(process), SIGKILL));
        ASSERT_TRUE(waitFor([] { return FindScreen() == 0; }));
    }

    /// A picture of the window, a PNG, from whatever screen is or comes up; empty when none can be
    /// had.
    std::string picture(const std::string& title) {
        const std::string file = sandbox().runtimeFolder() + "/picture.png";
        ChildProcess tool("juntoractl", {"screenshot", "picture.png", "--window", title},
                          {m_display.environment(), sandbox().runtimeFolder()});
        if (tool.wait() != 0) {
            return "";
        }
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    /// Puts a screen in the place of the one that runs, with other settings.
    ChildProcess changeScreen(const std::string& setting) {
        killScreen();
        std::vector<std::string> environment = m_display.environment();
        environment.push_back(setting);
        ChildProcess screen("juntora-screen", {}, {environment});
        EXPECT_TRUE(waitFor([] { return FindScreen() != 0; }));
        return screen;
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
    m_display.move(window, 40, 50);
    const auto place = m_display.place(window);
    m_display.click(window, 1, 239, 25, 271, 122);
    EXPECT_TRUE(waitFor([] { return IsWindowVisible(monitor()) == 0; }));
    EXPECT_TRUE(waitFor([this] { return !m_display.shows(ACTIVITY_TITLE); }));
    EXPECT_TRUE(IsWindow(tool)) << "hiding it closes nothing";

    clickActivity(showMain());
    ASSERT_NE("", m_display.visibleWindow(ACTIVITY_TITLE));
    EXPECT_TRUE(waitFor([&] { return m_display.place(window) == place; }))
        << "it comes up where it was put";
    m_display.press("Escape");
    EXPECT_TRUE(waitFor([] { return IsWindowVisible(monitor()) == 0; }));
}

TEST_F(ScreenTest, TheWindowsOwnMenuOpensTheAboutBoxAndReturnClosesIt) {
    m_display.click(showMain(), 3, 20, 50, 182, 58);
    ASSERT_TRUE(waitFor([this] { return m_display.shows(MENU_TITLE); }));
    m_display.press("Up");
    m_display.press("Up");
    m_display.press("Return");
    EXPECT_TRUE(waitFor([] { return FindWindowA("#32770", ABOUT_TITLE) != 0; }));
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
    killScreen();
    EXPECT_TRUE(hubGoesOn());

    EXPECT_NE("", picture(ACTIVITY_TITLE)) << "the next screen shows what is there";
    killScreen();
    EXPECT_NE("", showMain()) << "who shows a window sees to it that it is seen";
    m_display.endManager();
    EXPECT_NE("", picture(ACTIVITY_TITLE));
    m_display.end();
    ASSERT_TRUE(waitFor([] { return FindScreen() == 0; }));
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsWindowVisible(monitor()));
    signOff(tool);
}

TEST_F(ScreenTest, AListIsUpToDateAgainBehindMoreChangesThanCanBeShown) {
    constexpr int TOOLS = 25;
    attach("Draftel");
    clickActivity(showMain());
    ASSERT_NE("", m_display.visibleWindow(ACTIVITY_TITLE));
    std::string before;
    EXPECT_TRUE(waitFor([&] {
        const std::string last = std::exchange(before, picture(ACTIVITY_TITLE));
        return !before.empty() && before == last;
    }));
    for (int round = 0; round < 20; ++round) {
        std::vector<HWND> tools;
        tools.reserve(TOOLS);
        for (int i = 0; i < TOOLS; ++i) {
            tools.push_back(attach("Tool" + std::to_string(i)));
        }
        EXPECT_TRUE(round > 0 || waitFor([&] { return picture(ACTIVITY_TITLE) != before; }));
        for (const HWND tool : tools) {
            signOff(tool);
        }
    }
    EXPECT_TRUE(waitFor([&] { return picture(ACTIVITY_TITLE) == before; }));
}

TEST_F(ScreenTest, TheTrayOffersTheHubToAPersonWhoDoesNotSeeIt) {
    // The menu is made anew at each change, and what is chosen from the old one is lost.
    const auto choose = [this](const char* item, const std::function<bool()>& isDone) {
        return waitFor([&] { return isDone() || (m_display.panel().choose(item) && isDone()); });
    };
    const auto shows = [this](const char* title) {
        return [=, this] { return m_display.shows(title); };
    };
    EXPECT_TRUE(choose("_Activity...", shows(ACTIVITY_TITLE)));
    EXPECT_TRUE(choose("_Show", shows(MAIN_TITLE)));
    // The window manager puts the list away with the dialog that it stays above.
    m_display.activate(m_display.visibleWindow(MAIN_TITLE));
    m_display.press("Escape");
    EXPECT_TRUE(waitFor([this] { return !m_display.shows(MAIN_TITLE); }));
    EXPECT_TRUE(choose("_Activity...", shows(ACTIVITY_TITLE)));
    EXPECT_TRUE(choose("_About Juntora...", shows(ABOUT_TITLE)));
    m_display.activate(m_display.visibleWindow(ABOUT_TITLE));
    m_display.press("Return");
    EXPECT_TRUE(waitFor([] { return FindWindowA("#32770", ABOUT_TITLE) == 0; }));
    EXPECT_TRUE(choose("_Close",
                       [this] { return m_hub->wait(ChildProcess::Milliseconds(0)).has_value(); }));
}

TEST_F(ScreenTest, ItFollowsThePreferenceForDarkColours) {
    showMain();
    std::string light;
    EXPECT_TRUE(waitFor([&] {
        const std::string last = std::exchange(light, picture(MAIN_TITLE));
        return !light.empty() && light == last;
    }));
    m_display.panel().preferDark(true);
    EXPECT_TRUE(waitFor([&] { return picture(MAIN_TITLE) != light; }));
    m_display.panel().preferDark(false);
    EXPECT_TRUE(waitFor([&] { return picture(MAIN_TITLE) == light; }));
}

TEST_F(ScreenTest, ItShowsTheSameOnEveryPlatformAndTwiceAsLargeAtTwiceTheScale) {
    const ChildProcess onDisplay = changeScreen("QT_SCALE_FACTOR=1");
    const std::string here = picture(MAIN_TITLE);
    const ChildProcess reference = changeScreen("QT_QPA_PLATFORM=offscreen");
    EXPECT_EQ(picture(MAIN_TITLE), here);
    const ChildProcess doubled = changeScreen("QT_SCALE_FACTOR=2");
    const auto [width, height] = sizeOf(here);
    EXPECT_NE(0U, width);
    EXPECT_EQ(std::pair(2 * width, 2 * height), sizeOf(picture(MAIN_TITLE)));
}

TEST_F(ScreenTest, AMessageBoxIsAnsweredByThePersonWhoSeesItWhileAnotherProgramIsStopped) {
    clickActivity(showMain());
    ASSERT_NE("", m_display.visibleWindow(ACTIVITY_TITLE));
    attach("Draftel");         // There is something to be read from the list.
    ASSERT_TRUE(hubGoesOn());  // It is idle: stopped within a change it would keep everybody out.
    ASSERT_EQ(0, kill(m_hub->pid(), SIGSTOP));
    const auto ask = [this](const char* title, UINT flags, const char* key) {
        std::thread person([&] {
            m_display.activate(m_display.visibleWindow(title));
            // The toolkit takes letters once it knows that the window is active.
            const bool isAnswered = waitFor([&] {
                m_display.press(key);
                return FindWindowA("#32770", title) == 0;
            });
            if (!isAnswered) {  // Nobody else would end it.
                PostMessageA(FindWindowA("#32770", title), WM_COMMAND, IDCANCEL, 0);
            }
        });
        const int answer = MessageBoxA(0, "Save \"board.opj\"?", title, flags);
        person.join();
        return answer;
    };
    EXPECT_EQ(IDNO, ask("Its letter", MB_YESNOCANCEL | MB_ICONQUESTION, "alt+n"));
    EXPECT_EQ(IDYES, ask("Letter alone", MB_YESNOCANCEL | MB_ICONQUESTION, "y"));
    EXPECT_EQ(IDNO, ask("The default", MB_YESNOCANCEL | MB_DEFBUTTON2, "Return"));
    EXPECT_EQ(IDCANCEL, ask("Escape", MB_OKCANCEL | MB_ICONWARNING, "Escape"));
    ASSERT_EQ(0, kill(m_hub->pid(), SIGCONT));
}

TEST_F(ScreenTest, AQuestionIsAskedUntilItsAnswerIsToBeRemembered) {
    constexpr char TITLE[] = "juntoractl";
    constexpr int NO = 7;
    constexpr int CANCEL = 3;
    constexpr int TICK = 60022;
    setenv("JUNTORA_REGISTRY", (sandbox().runtimeFolder() + "/registry").c_str(), 1);
    const auto ask = [this] {
        return ChildProcess("juntoractl", {"message", "dialog", "TVCOMMN", "1821", "--style", "3"},
                            {m_display.environment()});
    };
    const auto click = [&](const std::string& window, int control) {
        const HWND box = FindWindowA(nullptr, TITLE);
        RECT whole{};
        RECT place{};
        GetClientRect(box, &whole);
        ASSERT_TRUE(GetWindowRect(GetDlgItem(box, control), &place)) << control;
        m_display.click(window, 1, (place.left + place.right) / 2, (place.top + place.bottom) / 2,
                        whole.right, whole.bottom);
    };
    ChildProcess first = ask();
    click(m_display.visibleWindow(TITLE), NO);
    EXPECT_EQ(first.readLine(), "7");
    EXPECT_EQ(first.wait(), 0);

    ChildProcess second = ask();
    const std::string window = m_display.visibleWindow(TITLE);
    click(window, TICK);
    click(window, CANCEL);
    EXPECT_EQ(second.readLine(), "3");
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(ask().readLine(), "3") << "without a question";
    unsetenv("JUNTORA_REGISTRY");
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
