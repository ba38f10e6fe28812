// The hub's dialogs, from outside: what they look like, what closes them and what does not.
#include <string>
#include <vector>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/support/HubProcess.h"

namespace juntora::test {
namespace {

class HubTest : public HubProcess {
protected:
    std::string textOf(HWND window) const {
        char text[128];
        GetWindowTextA(window, text, sizeof text);
        return text;
    }
    std::string textOf(int control) const { return textOf(GetDlgItem(mainDialog(), control)); }

    static std::vector<std::string> lines() {
        std::vector<std::string> all;
        char line[400];
        for (WPARAM index = 0;
             SendMessageA(listBox(), LB_GETTEXT, index, reinterpret_cast<LPARAM>(line)) != LB_ERR;
             ++index) {
            all.emplace_back(line);
        }
        return all;
    }
    void show() const {
        PostMessageA(mainDialog(), RegisterWindowMessageA("OHMARAJuntoraShowMessage"), 1, 0);
        EXPECT_TRUE(hubGoesOn());
    }
    void post(HWND window, UINT message, WPARAM wParam) const {
        PostMessageA(window, message, wParam, 0);
    }
};

constexpr WPARAM ESCAPE = 27;
constexpr WPARAM RETURN = 13;

TEST_F(HubTest, OpensMinimisedAndTakesNothingFromAnybody) {
    const HWND mine = makeTool();
    ShowWindow(mine, SW_SHOWNORMAL);
    SetForegroundWindow(mine);
    startHub({"some", "-unknown", "-", "\"words\"\"", std::string(600, 'x'), "\"open"});
    EXPECT_TRUE(IsWindowVisible(mainDialog()));
    EXPECT_TRUE(IsIconic(mainDialog()));
    EXPECT_FALSE(IsWindowVisible(monitor()));
    EXPECT_FALSE(IsWindowVisible(hubWindow()));
    EXPECT_EQ(GetForegroundWindow(), mine);
    EXPECT_EQ(GetDlgCtrlID(hubWindow()), 101);
    EXPECT_EQ(GetWindowStyle(hubWindow()), WS_CHILD | WS_BORDER);
    EXPECT_EQ(textOf(1017), "Version 16.6.0");
    EXPECT_EQ(textOf(1016), "&Close");
    EXPECT_EQ(textOf(1000), "&Activity...");
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(mainDialog(), 1002)));
    EXPECT_EQ(SendMessageA(mainDialog(), WM_QUERYDRAGICON, 0, 0), 128);
}

TEST_F(HubTest, IsPutAwayByItsCloseButtonAndByEscape) {
    startHub();
    const HWND dialog = mainDialog();
    post(dialog, RegisterWindowMessageA("OHMARAJuntoraShowMessage"), 2);
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsIconic(dialog)) << "only 1 means show";
    show();
    EXPECT_FALSE(IsIconic(dialog));
    SendMessageA(GetDlgItem(dialog, 1016), BM_CLICK, 0, 0);
    EXPECT_TRUE(IsIconic(dialog));

    for (const WPARAM key : {ESCAPE, RETURN}) {
        show();
        post(dialog, WM_KEYDOWN, key);
        EXPECT_TRUE(hubGoesOn());
        EXPECT_TRUE(IsIconic(dialog)) << key;
    }
    for (const WPARAM command : {WPARAM{IDOK}, WPARAM{IDCANCEL}}) {
        show();
        SendMessageA(dialog, WM_COMMAND, command, 0);
        EXPECT_TRUE(hubGoesOn());
        EXPECT_TRUE(IsIconic(dialog)) << command;
    }
}

TEST_F(HubTest, EndsByACloseRequestOnlyWithoutTools) {
    startHub();
    const HWND tool = attach("Draftel");
    post(mainDialog(), WM_SYSCOMMAND, SC_CLOSE);
    SendMessageA(mainDialog(), WM_CLOSE, 0, 0);
    EXPECT_TRUE(hubGoesOn());
    const HWND second = attach("Sketchel");
    signOff(tool);
    SendMessageA(mainDialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_TRUE(hubGoesOn());
    signOff(second);
    SendMessageA(mainDialog(), WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_EQ(hubResult(), 0);
    EXPECT_EQ(m_hub->errors(), "");
    EXPECT_EQ(hubWindow(), 0U);
    EXPECT_EQ(mainDialog(), 0U);
}

TEST_F(HubTest, EndsAtTheTickAfterTheLastToolHasGone) {
    startHub();
    tick();
    EXPECT_TRUE(hubGoesOn()) << "it never had a client";
    const HWND first = attach("Draftel");
    const HWND second = attach("Draftel");
    EXPECT_EQ(lines().size(), 2U);
    signOff(first);
    DestroyWindow(second);
    EXPECT_EQ(lines().size(), 1U) << "nobody has noticed yet";
    tick();
    EXPECT_EQ(hubResult(), 0);
}

TEST_F(HubTest, ShowsActivityUntilItIsClosedWithoutStoppingIt) {
    startHub();
    const HWND tool = attach("Draftel");
    SendMessageA(GetDlgItem(mainDialog(), 1000), BM_CLICK, 0, 0);
    EXPECT_TRUE(IsWindowVisible(monitor()));
    EXPECT_TRUE(IsIconic(mainDialog())) << "the main dialog stays as it is";
    char line[64];
    std::snprintf(line, sizeof line, " Draftel;0   (%04x)           ", tool);
    EXPECT_EQ(lines(), std::vector<std::string>{line});

    const std::vector<std::pair<UINT, WPARAM>> closings = {
        {WM_KEYDOWN, ESCAPE}, {WM_SYSCOMMAND, SC_CLOSE}, {WM_COMMAND, IDCANCEL}};
    for (const auto& [message, wParam] : closings) {
        SendMessageA(mainDialog(), WM_COMMAND, 1000, 0);
        EXPECT_TRUE(IsWindowVisible(monitor()));
        post(monitor(), message, wParam);
        EXPECT_TRUE(hubGoesOn());
        EXPECT_FALSE(IsWindowVisible(monitor())) << message;
    }
    SendMessageA(monitor(), WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(hubGoesOn());
    DestroyWindow(tool);
    tick();
    EXPECT_EQ(hubResult(), 0) << "the clock has gone on";
}

TEST_F(HubTest, HidesBothDialogsAndComesBackWhenAsked) {
    startHub();
    const HWND tool = attach("Draftel");
    SendMessageA(mainDialog(), WM_COMMAND, 1000, 0);
    SendMessageA(mainDialog(), WM_COMMAND, 1002, 0);
    EXPECT_FALSE(IsWindowVisible(monitor()));
    EXPECT_FALSE(IsWindowVisible(mainDialog()));
    EXPECT_EQ(command(tool, "SW_SHOW"), 0);
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsWindowVisible(mainDialog()));
    EXPECT_FALSE(IsIconic(mainDialog()));
}

TEST_F(HubTest, ShowsOneAboutBoxAndServesMeanwhile) {
    startHub();
    constexpr WPARAM ABOUT = 16;
    const auto about = [] { return FindWindowA("#32770", "About Voltara Juntora"); };
    for (int time = 0; time < 3; ++time) {
        post(mainDialog(), WM_SYSCOMMAND, ABOUT | 3);  // The low bits are the system's.
    }
    EXPECT_TRUE(hubGoesOn());
    ASSERT_NE(about(), 0U);
    EXPECT_EQ(textOf(GetDlgItem(about(), 1004)), "Version 16.6.0");
    EXPECT_EQ(textOf(GetDlgItem(about(), 1007)), "000");
    EXPECT_EQ(textOf(GetDlgItem(about(), 1008)), "d001");
    const HWND tool = attach("Draftel");
    SendMessageA(GetDlgItem(about(), IDOK), BM_CLICK, 0, 0);
    EXPECT_TRUE(waitFor([&] { return about() == 0; }));
    EXPECT_TRUE(hubGoesOn());
    EXPECT_TRUE(IsWindowEnabled(mainDialog()));

    post(mainDialog(), WM_SYSCOMMAND, ABOUT);
    EXPECT_TRUE(hubGoesOn());
    ASSERT_NE(about(), 0U);
    signOff(tool);
    tick();
    EXPECT_EQ(hubResult(), 0) << "a box that stands forgotten does not keep the hub";
}

TEST_F(HubTest, SurvivesWhateverIsSentToItsWindows) {
    startHub();
    attach("Draftel");
    for (const HWND window :
         {hubWindow(), mainDialog(), monitor(), GetDlgItem(mainDialog(), 1016)}) {
        for (const UINT message :
             {WM_CREATE, WM_INITDIALOG, WM_CLOSE, WM_COMMAND, WM_SYSCOMMAND, WM_TIMER,
              WM_GETDLGCODE, WM_PAINT, WM_SETICON, WM_KEYDOWN, WM_CHAR, LB_GETTEXT}) {
            SendMessageA(window, message, 0x1234567, 0);
        }
        SendMessageA(window, WM_QUIT, 0, 0);
        EXPECT_FALSE(PostMessageA(window, WM_QUIT, 0, 0));
    }
    for (const UINT message : {LB_ADDSTRING, LB_GETTEXT, LB_GETTEXTLEN, LB_DELETESTRING,
                               LB_SETCURSEL, LB_INSERTSTRING, LB_FINDSTRINGEXACT, WM_CREATE}) {
        SendMessageA(listBox(), message, 0x7FFF'FFFF'FFFF, 0);
    }
    // Pointers that mean nothing in the hub.
    for (const HWND window : {hubWindow(), mainDialog(), listBox()}) {
        SendMessageA(window, WM_GETTEXT, 64, 0);
        for (const UINT message : {WM_TIMER, WM_SETTEXT, WM_GETTEXT, LB_ADDSTRING, LB_GETTEXT,
                                   LB_INSERTSTRING, LB_FINDSTRINGEXACT}) {
            PostMessageA(window, message, 0, 0x1234567);
        }
    }
    EXPECT_TRUE(hubGoesOn());
    EXPECT_EQ(lines().size(), 1U);
}

}  // namespace
}  // namespace juntora::test
