// Dialogs: made from templates, run modally, steered by keys and messages.
#include "platform/dialog/dialog.h"

#include <unistd.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

constexpr int ID_FIRST = 11;
constexpr int ID_SECOND = 12;
constexpr int ID_LIST = 13;
constexpr int ID_CHECK = 14;
constexpr int ID_LABEL = 15;

constexpr char TAB = 9;
constexpr char RETURN = 13;
constexpr char ESCAPE = 27;

constexpr DWORD SHOWN = WS_VISIBLE | WS_TABSTOP;

constexpr DialogControl CONTROLS[] = {
    {ID_FIRST, "Button", "&First", SHOWN | BS_PUSHBUTTON, 4, 8, 50, 14},
    {ID_SECOND, "Button", "Se&&c&ond", SHOWN | BS_DEFPUSHBUTTON, 7, 18, 50, 14},
    {ID_LABEL, "Static", "&Lines", WS_VISIBLE, 0, 0, 8, 8},
    {ID_LIST, "ListBox", "", SHOWN, 0, 40, 50, 30},
    {ID_CHECK, "Button", "&Check", SHOWN | BS_AUTOCHECKBOX, 0, 80, 50, 10},
    {IDCANCEL, "Button", "&Quit", SHOWN | BS_PUSHBUTTON, 60, 8, 50, 14},
    {-1, "Static", "", WS_VISIBLE | SS_ICON, 0, 0, 20, 20, 128},
};
constexpr DialogTemplate DIALOG{
    7, "A dialog", WS_POPUP | WS_CAPTION, WS_EX_APPWINDOW, 182, 58, "MS Sans Serif", 8, CONTROLS};
constexpr DialogTemplate BARE{8, "Bare", WS_POPUP, 0, 40, 16, "MS Sans Serif", 8, {}};

struct Event {
    HWND window;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};
using Handler = std::function<BOOL(const Event&)>;
Handler handler;

BOOL procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return handler ? handler({window, message, wParam, lParam}) : 0;
}

class DialogTest : public TestDesktop {
protected:
    DialogTest() {
        // What a program's dialogs commonly do with commands, and a record of them.
        handler = [this](const Event& event) {
            if (event.message != WM_COMMAND) {
                return 0;
            }
            m_commands.push_back(static_cast<int>(event.wParam & 0xFFFF));
            if (m_commands.back() == IDOK || m_commands.back() == IDCANCEL) {
                EndDialog(event.window, m_commands.back());
            }
            return 1;
        };
    }
    ~DialogTest() override { handler = nullptr; }

    static HWND make(const DialogTemplate& source = DIALOG) {
        return CreateDialogFromTemplate(source, 0, procedure, 0);
    }
    static bool key(HWND dialog, HWND to, UINT message, WPARAM which) {
        const MSG typed{to, message, which, 0, 0, {}};
        return IsDialogMessageA(dialog, &typed) != 0;
    }
    static bool press(HWND dialog, WPARAM which) { return key(dialog, dialog, WM_KEYDOWN, which); }
    /// The commands that come of keys and characters ('!': the next one with Alt); 0 for one that
    /// is none of the dialog's.
    std::vector<int> type(HWND dialog, std::string_view keys) {
        constexpr UINT WITH_ALT = 262;
        m_commands.clear();
        UINT message = WM_CHAR;
        for (const char typed : keys) {
            if (typed == '!') {
                message = WITH_ALT;
                continue;
            }
            const bool isKey = typed == TAB || typed == RETURN || typed == ESCAPE;
            if (!key(dialog, dialog, isKey ? WM_KEYDOWN : message, static_cast<WPARAM>(typed))) {
                m_commands.push_back(0);
            }
            message = WM_CHAR;
        }
        return m_commands;
    }
    static LRESULT click(HWND dialog, int id) {
        return SendMessageA(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
    }

    using Action = std::function<void(HWND)>;
    /// Runs a dialog that does `atFirst` before it is ready, and `later` in its loop.
    static int runModal(const DialogTemplate& source, const Action& later,
                        const Action& atFirst = nullptr, HWND owner = 0) {
        handler = [=](const Event& event) {
            if (event.message == WM_INITDIALOG) {
                EXPECT_EQ(event.lParam, 77);
                PostMessageA(event.window, WM_APP, 0, 0);
            }
            const Action& action = event.message == WM_INITDIALOG ? atFirst : later;
            if (action && (event.message == WM_INITDIALOG || event.message == WM_APP)) {
                action(event.window);
            }
            return 0;
        };
        return RunModalDialog(source, owner, procedure, 77);
    }

    std::vector<int> m_commands;
};

using Commands = std::vector<int>;

TEST_F(DialogTest, StandsAsItsTemplateSays) {
    const HWND dialog = make();
    ASSERT_NE(dialog, 0U);
    EXPECT_EQ(FindWindowA(nullptr, "A dialog"), dialog);
    EXPECT_FALSE(IsWindowVisible(dialog)) << "its template does not say so";
    RECT rect{};
    GetClientRect(dialog, &rect);
    EXPECT_EQ(rect.right, 273);
    EXPECT_EQ(rect.bottom, 94);
    GetWindowRect(GetDlgItem(dialog, ID_FIRST), &rect);
    EXPECT_EQ(rect.left, 6);
    EXPECT_EQ(rect.top, 13);
    EXPECT_EQ(rect.right - rect.left, 75);
    EXPECT_EQ(rect.bottom - rect.top, 23);
    char text[32];
    GetClassNameA(GetDlgItem(dialog, ID_LIST), text, sizeof text);
    EXPECT_STREQ(text, "ListBox");
    GetWindowTextA(GetDlgItem(dialog, -1), text, sizeof text);
    EXPECT_STREQ(text, "#128") << "an icon by its number";
    DestroyWindow(dialog);
    EXPECT_FALSE(IsWindow(dialog));
}

TEST_F(DialogTest, IsNotMadeWhereAControlCannotBe) {
    const DialogControl unknown[] = {{1, "NoSuchClass", "", 0, 0, 0, 1, 1}};
    DialogTemplate broken = BARE;
    broken.controls = unknown;
    EXPECT_EQ(make(broken), 0U);
    EXPECT_EQ(FindWindowA(nullptr, "Bare"), 0U);
    EXPECT_EQ(RunModalDialog(broken, 0, procedure, 0), -1);
}

TEST_F(DialogTest, TellsItsOwnerOfClicks) {
    const HWND dialog = make();
    click(dialog, ID_FIRST);
    EXPECT_EQ(m_commands, Commands{ID_FIRST});

    EnableWindow(GetDlgItem(dialog, ID_FIRST), 0);
    click(dialog, ID_FIRST);
    EnableWindow(dialog, 0);
    click(dialog, ID_SECOND);
    EXPECT_EQ(m_commands, Commands{ID_FIRST}) << "neither the button nor the dialog is enabled";
    EnableWindow(dialog, 1);

    const HWND check = GetDlgItem(dialog, ID_CHECK);
    EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), 0);
    click(dialog, ID_CHECK);
    EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), 1);
    click(dialog, ID_CHECK);
    EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), 0);
    SendMessageA(check, BM_SETCHECK, 1, 0);
    EXPECT_EQ(SendMessageA(check, BM_GETCHECK, 0, 0), 1);
    EXPECT_EQ(m_commands, (Commands{ID_FIRST, ID_CHECK, ID_CHECK}));
    DestroyWindow(dialog);
}

TEST_F(DialogTest, KeysMoveTheFocusAndPressButtons) {
    const HWND dialog = make();
    const std::pair<const char*, Commands> cases[] = {
        {"\r", {ID_FIRST}},       // The first tab stop has the focus.
        {"\t\t\r", {ID_SECOND}},  // A list: the default button.
        {"\t\t\r", {IDCANCEL}},
        {"\t\r", {ID_FIRST}},  // Round to the first one.
        {"Fo", {ID_FIRST, ID_SECOND}},
        {"&s", {0, 0}},
        {"lf", {0}},  // The label passes the focus to the list, which takes letters.
        {"!f", {ID_FIRST}},
    };
    for (const auto& [keys, commands] : cases) {
        EXPECT_EQ(type(dialog, keys), commands) << keys;
    }
    EnableWindow(GetDlgItem(dialog, ID_SECOND), 0);
    EXPECT_EQ(type(dialog, "!o"), Commands{0});
    EXPECT_FALSE(press(dialog, 'F')) << "a key, not a character";
    DestroyWindow(dialog);
}

TEST_F(DialogTest, EscapeAndTheCloseBoxAreTheCancelCommand) {
    const HWND dialog = make();
    press(dialog, ESCAPE);
    SendMessageA(dialog, WM_CLOSE, 0, 0);
    SendMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
    EXPECT_EQ(m_commands, (Commands{IDCANCEL, IDCANCEL, IDCANCEL}));
    EXPECT_TRUE(IsWindow(dialog));
    EnableWindow(GetDlgItem(dialog, IDCANCEL), 0);
    press(dialog, ESCAPE);
    SendMessageA(dialog, WM_CLOSE, 0, 0);
    EXPECT_EQ(m_commands.size(), 3U) << "the cancel button is disabled";
    DestroyWindow(dialog);

    const HWND bare = make(BARE);
    EXPECT_EQ(type(bare, "\r\t\x1b"), (Commands{IDOK, IDCANCEL}));
    DestroyWindow(bare);
}

TEST_F(DialogTest, KeysOfOtherWindowsAreNotItsOwn) {
    const HWND dialog = make();
    const HWND other = make(BARE);
    EXPECT_FALSE(key(dialog, other, WM_KEYDOWN, RETURN));
    EXPECT_FALSE(key(other, GetDlgItem(dialog, ID_FIRST), WM_KEYDOWN, RETURN));
    EXPECT_TRUE(key(dialog, GetDlgItem(dialog, ID_SECOND), WM_KEYDOWN, RETURN));
    EnableWindow(dialog, 0);
    EXPECT_FALSE(press(dialog, RETURN));
    EXPECT_EQ(m_commands, Commands{ID_SECOND}) << "the key's own control has the focus";
    DestroyWindow(dialog);
    DestroyWindow(other);
}

TEST_F(DialogTest, AnswersWithTheResultThatWasSet) {
    handler = [](const Event& event) {
        if (event.message == WM_APP) {
            // A message inside the message must not take its result away.
            SetDialogResult(event.window, 5);
            EXPECT_EQ(SendMessageA(event.window, WM_APP + 1, 0, 0), 6);
            return 1;
        }
        if (event.message == WM_APP + 1) {
            SetDialogResult(event.window, 6);
            return 1;
        }
        return 0;
    };
    const HWND dialog = make(BARE);
    EXPECT_EQ(SendMessageA(dialog, WM_APP, 0, 0), 5);
    EXPECT_EQ(SendMessageA(dialog, WM_APP + 2, 0, 0), 0);
    DestroyWindow(dialog);
}

TEST_F(DialogTest, RunsUntilItIsEndedWithItsOwnerDisabled) {
    const HWND owner = make(BARE);
    const auto look = [=](HWND dialog) {
        EXPECT_FALSE(IsWindowEnabled(owner));
        EXPECT_TRUE(IsWindowVisible(dialog)) << "the loop shows it";
        EndDialog(dialog, 42);
    };
    EXPECT_EQ(runModal(DIALOG, look, nullptr, owner), 42);
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_EQ(FindWindowA(nullptr, "A dialog"), 0U);
    DestroyWindow(owner);
}

TEST_F(DialogTest, LeavesADialogAloneThatShowedItself) {
    const auto look = [](HWND dialog) { EndDialog(dialog, IsIconic(dialog) != 0 ? 1 : 2); };
    const auto show = [](HWND dialog) { ShowWindow(dialog, SW_SHOWMINNOACTIVE); };
    EXPECT_EQ(runModal(DIALOG, look, show), 1);
}

TEST_F(DialogTest, EndsByAMessageThatAnotherThreadSends) {
    // Nothing but the sent message ever comes: the loop must see its end without another one.
    std::thread sender;
    handler = [&](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            sender = std::thread([window = event.window] { SendMessageA(window, WM_CLOSE, 0, 0); });
        } else if (event.message == WM_COMMAND) {
            EndDialog(event.window, static_cast<int>(event.wParam));
            return 1;
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(BARE, 0, procedure, 0), IDCANCEL);
    sender.join();
}

TEST_F(DialogTest, ServesOtherDialogsAndTheirKeysMeanwhile) {
    const HWND other = make();
    handler = [&](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            PostMessageA(GetDlgItem(other, ID_FIRST), WM_KEYDOWN, RETURN, 0);
        } else if (event.message == WM_COMMAND && event.window == other) {
            EndDialog(FindWindowA(nullptr, "Bare"), static_cast<int>(event.wParam));
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(BARE, 0, procedure, 0), ID_FIRST);
    DestroyWindow(other);
}

TEST_F(DialogTest, TakesTheDialogsInsideItAlongToItsEnd) {
    int inner = 0;
    HWND outer = 0;
    const auto nest = [&](HWND dialog) {
        if (outer != 0) {
            EndDialog(outer, 9);
            return;
        }
        outer = dialog;
        inner = RunModalDialog(BARE, outer, procedure, 77);
    };
    EXPECT_EQ(runModal(DIALOG, nest), 9);
    EXPECT_EQ(inner, IDCANCEL);
}

TEST_F(DialogTest, EndsWithItsWindowAndWithTheThreadsLoops) {
    const auto destroy = [](HWND dialog) { DestroyWindow(dialog); };
    EXPECT_EQ(runModal(BARE, destroy), IDCANCEL);
    EXPECT_EQ(runModal(BARE, nullptr, [](HWND) { PostQuitMessage(3); }), IDCANCEL);
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, 0, 0, 0), 0) << "the loops outside end too";
    EXPECT_EQ(message.wParam, 3U);
}

TEST_F(DialogTest, MayBeEndedOrDestroyedBeforeItIsReady) {
    EXPECT_EQ(runModal(BARE, nullptr, [](HWND dialog) { EndDialog(dialog, 4); }), 4);
    EXPECT_EQ(runModal(BARE, nullptr, [](HWND dialog) { DestroyWindow(dialog); }), -1);
    EXPECT_EQ(CreateDialogFromTemplate(BARE, 0, procedure, 77), 0U);
    EXPECT_FALSE(EndDialog(0x12345, 1));
}

TEST(MessageBoxTest, AnswersWithTheDefaultButtonAndTellsSo) {
    const auto answer = [](UINT flags) { return MessageBoxA(0, "text", "caption", flags); };
    testing::internal::CaptureStderr();
    EXPECT_EQ(answer(MB_OK), IDOK);
    EXPECT_EQ(answer(MB_YESNOCANCEL | MB_DEFBUTTON2 | MB_ICONQUESTION), IDNO);
    EXPECT_EQ(answer(MB_ABORTRETRYIGNORE | MB_DEFBUTTON3 | MB_SYSTEMMODAL), IDIGNORE);
    EXPECT_EQ(answer(MB_RETRYCANCEL), IDRETRY);
    EXPECT_EQ(answer(MB_OK | MB_DEFBUTTON3), IDOK) << "no such button";
    EXPECT_EQ(answer(0xF), IDOK) << "no such box";
    testing::internal::GetCapturedStderr();

    testing::internal::CaptureStderr();
    MessageBoxA(0, "first\r\n\x1b[2Jsecond", nullptr, MB_OKCANCEL);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[Error]\n    first\n    \\x1b[2Jsecond\n"
              "    (answered \"OK\": no screen shows this desktop)\n");
}

TEST(MessageBoxTest, NeedsNobodyToReadIt) {
    const int before = dup(STDERR_FILENO);
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    dup2(ends[1], STDERR_FILENO);
    const std::string text(3000, 'x');
    for (int time = 0; time < 100; ++time) {  // More than any pipe holds.
        EXPECT_EQ(MessageBoxA(0, text.c_str(), "caption", MB_OK), IDOK);
    }
    close(ends[0]);
    EXPECT_EQ(MessageBoxA(0, "text", "caption", MB_OKCANCEL), IDOK);
    dup2(before, STDERR_FILENO);
    close(before);
    close(ends[1]);
}

TEST(ResourceTest, AreFoundByNumberInTheOrderTheyCame) {
    static constexpr DialogTemplate dialogs[] = {DIALOG, BARE};
    static constexpr StringResource first[] = {{1, "one"}, {2, "two"}};
    static constexpr StringResource second[] = {{2, "another"}, {3, "three"}};
    RegisterResources(dialogs, first);
    RegisterResources({}, second);
    EXPECT_EQ(FindDialogTemplate(8), &dialogs[1]);
    EXPECT_EQ(FindDialogTemplate(9), nullptr);
    char text[4] = "xxx";
    EXPECT_EQ(LoadStringA(2, text, sizeof text), 3);
    EXPECT_STREQ(text, "two");
    EXPECT_EQ(LoadStringA(3, text, sizeof text), 3);
    EXPECT_STREQ(text, "thr") << "cut to what there is room for";
    EXPECT_EQ(LoadStringA(4, text, sizeof text), 0);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(LoadStringA(1, text, 0), 0);
}

TEST_F(DialogTest, HasAMenuOfItsOwn) {
    const HWND dialog = make();
    SystemMenu* menu = GetSystemMenu(dialog);
    const auto enable = [&](UINT item, UINT flags = 0) {
        return EnableMenuItem(GetSystemMenu(dialog), item, MF_BYCOMMAND | flags);
    };
    EXPECT_EQ(enable(SC_MAXIMIZE, MF_GRAYED), 0);
    EXPECT_EQ(enable(SC_MAXIMIZE), static_cast<int>(MF_GRAYED));
    EXPECT_EQ(enable(16), -1);
    EXPECT_TRUE(AppendMenuA(menu, MF_SEPARATOR, 0, nullptr));
    EXPECT_TRUE(AppendMenuA(menu, MF_STRING, 16, "&About"));
    EXPECT_EQ(enable(16), 0);
    EXPECT_EQ(enable(0), -1) << "a separator is no command";
    const HWND other = make();
    EXPECT_EQ(EnableMenuItem(GetSystemMenu(other), 16, MF_BYCOMMAND), -1);
    DestroyWindow(other);
    DestroyWindow(dialog);
    EXPECT_EQ(GetSystemMenu(dialog), nullptr);
}

}  // namespace
}  // namespace juntora::test
