// Dialogs: made from templates, run modally, steered by keys and messages.
#include "platform/dialog/dialog.h"

#include <unistd.h>

#include <array>
#include <functional>
#include <string>
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
    static LRESULT click(HWND dialog, int id) {
        return SendMessageA(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
    }

    std::vector<int> m_commands;
};

constexpr WPARAM TAB = 9;
constexpr WPARAM RETURN = 13;
constexpr WPARAM ESCAPE = 27;
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
    EXPECT_TRUE(press(dialog, RETURN)) << "the first tab stop has the focus";
    EXPECT_TRUE(press(dialog, TAB));
    EXPECT_TRUE(press(dialog, TAB));
    EXPECT_TRUE(press(dialog, RETURN)) << "a list: the default button";
    EXPECT_EQ(m_commands, (Commands{ID_FIRST, ID_SECOND}));
    for (int step = 0; step < 2; ++step) {
        press(dialog, TAB);
    }
    press(dialog, RETURN);
    EXPECT_EQ(m_commands.back(), IDCANCEL);
    press(dialog, TAB);
    press(dialog, RETURN);
    EXPECT_EQ(m_commands.back(), ID_FIRST) << "round to the first one";
    EXPECT_FALSE(press(dialog, 'F')) << "a key, not a character";
    DestroyWindow(dialog);
}

TEST_F(DialogTest, MnemonicsPressButtonsAndLabelsPassTheFocusOn) {
    const HWND dialog = make();
    EXPECT_TRUE(key(dialog, dialog, WM_CHAR, 'F'));
    EXPECT_TRUE(key(dialog, dialog, WM_CHAR, 'o'));
    EXPECT_EQ(m_commands, (Commands{ID_FIRST, ID_SECOND}));
    EXPECT_FALSE(key(dialog, dialog, WM_CHAR, '&'));
    EXPECT_FALSE(key(dialog, dialog, WM_CHAR, 's'));

    EXPECT_TRUE(key(dialog, dialog, WM_CHAR, 'l'));
    EXPECT_FALSE(key(dialog, dialog, WM_CHAR, 'f')) << "the list takes plain letters itself";
    constexpr UINT WITH_ALT = 262;
    EXPECT_TRUE(key(dialog, dialog, WITH_ALT, 'f'));

    EnableWindow(GetDlgItem(dialog, ID_SECOND), 0);
    EXPECT_FALSE(key(dialog, dialog, WITH_ALT, 'o'));
    EXPECT_EQ(m_commands, (Commands{ID_FIRST, ID_SECOND, ID_FIRST}));
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
    EXPECT_TRUE(press(bare, RETURN));
    EXPECT_TRUE(press(bare, TAB));
    EXPECT_TRUE(press(bare, ESCAPE));
    EXPECT_EQ((Commands{m_commands.begin() + 3, m_commands.end()}), (Commands{IDOK, IDCANCEL}));
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
    bool wasEnabled = true;
    bool wasVisible = false;
    LPARAM param = 0;
    handler = [&](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            param = event.lParam;
            PostMessageA(event.window, WM_APP, 0, 0);
        } else if (event.message == WM_APP) {
            wasEnabled = IsWindowEnabled(owner) != 0;
            wasVisible = IsWindowVisible(event.window) != 0;
            EndDialog(event.window, 42);
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(DIALOG, owner, procedure, 77), 42);
    EXPECT_EQ(param, 77);
    EXPECT_FALSE(wasEnabled);
    EXPECT_TRUE(wasVisible) << "the loop shows it";
    EXPECT_TRUE(IsWindowEnabled(owner));
    EXPECT_EQ(FindWindowA(nullptr, "A dialog"), 0U);
    DestroyWindow(owner);
}

TEST_F(DialogTest, LeavesADialogAloneThatShowedItself) {
    handler = [](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            ShowWindow(event.window, SW_SHOWMINNOACTIVE);
            PostMessageA(event.window, WM_APP, 0, 0);
        } else if (event.message == WM_APP) {
            EndDialog(event.window, IsIconic(event.window) != 0 ? 1 : 2);
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(DIALOG, 0, procedure, 0), 1);
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
    handler = [&](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            outer = outer == 0 ? event.window : outer;
            PostMessageA(event.window, WM_APP, 0, 0);
        } else if (event.message == WM_APP && event.window == outer) {
            inner = RunModalDialog(BARE, outer, procedure, 0);
        } else if (event.message == WM_APP) {
            EndDialog(outer, 9);
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(DIALOG, 0, procedure, 0), 9);
    EXPECT_EQ(inner, IDCANCEL);
}

TEST_F(DialogTest, EndsWithItsWindowAndWithTheThreadsLoops) {
    handler = [](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            PostMessageA(event.window, WM_APP, 0, 0);
        } else if (event.message == WM_APP) {
            DestroyWindow(event.window);
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(BARE, 0, procedure, 0), IDCANCEL);

    handler = [](const Event& event) {
        if (event.message == WM_INITDIALOG) {
            PostQuitMessage(3);
        }
        return 0;
    };
    EXPECT_EQ(RunModalDialog(BARE, 0, procedure, 0), IDCANCEL);
    MSG message{};
    EXPECT_EQ(GetMessageA(&message, 0, 0, 0), 0) << "the loops outside end too";
    EXPECT_EQ(message.wParam, 3U);
}

TEST_F(DialogTest, MayBeEndedOrDestroyedBeforeItIsReady) {
    handler = [](const Event& event) {
        return event.message == WM_INITDIALOG ? EndDialog(event.window, 4) : 0;
    };
    EXPECT_EQ(RunModalDialog(BARE, 0, procedure, 0), 4);
    handler = [](const Event& event) {
        return event.message == WM_INITDIALOG ? DestroyWindow(event.window) : 0;
    };
    EXPECT_EQ(RunModalDialog(BARE, 0, procedure, 0), -1);
    EXPECT_EQ(make(BARE), 0U);
    EXPECT_FALSE(EndDialog(0x12345, 1));
}

TEST_F(DialogTest, OutlivesMessagesOnItsOwnMakingFromElsewhere) {
    const HWND dialog = make();
    SendMessageA(dialog, WM_CREATE, 0, 0x1234);
    SendMessageA(dialog, WM_INITDIALOG, 0, 0x1234);
    click(dialog, ID_FIRST);
    EXPECT_EQ(m_commands, Commands{ID_FIRST});
    DestroyWindow(dialog);
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

/// Puts one end of a pipe in the place of standard error for as long as it lives.
class ErrorsIntoPipe {
public:
    ErrorsIntoPipe() : m_before(dup(STDERR_FILENO)) {
        EXPECT_EQ(pipe(m_ends.data()), 0);
        dup2(m_ends[1], STDERR_FILENO);
    }
    ~ErrorsIntoPipe() {
        dup2(m_before, STDERR_FILENO);
        for (const int descriptor : {m_before, m_ends[0], m_ends[1]}) {
            close(descriptor);
        }
    }
    ErrorsIntoPipe(const ErrorsIntoPipe&) = delete;
    ErrorsIntoPipe& operator=(const ErrorsIntoPipe&) = delete;

    void loseReader() { close(std::exchange(m_ends[0], -1)); }

private:
    const int m_before;
    std::array<int, 2> m_ends{};
};

TEST(MessageBoxTest, NeedsNobodyToReadIt) {
    {
        const ErrorsIntoPipe unread;
        const std::string text(3000, 'x');
        for (int time = 0; time < 100; ++time) {  // More than any pipe holds.
            EXPECT_EQ(MessageBoxA(0, text.c_str(), "caption", MB_OK), IDOK);
        }
    }
    ErrorsIntoPipe broken;
    broken.loseReader();
    EXPECT_EQ(MessageBoxA(0, "text", "caption", MB_OKCANCEL), IDOK);
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
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(GetSystemMenu(dialog), menu);
    EXPECT_EQ(EnableMenuItem(menu, SC_MAXIMIZE, MF_BYCOMMAND | MF_GRAYED), 0);
    EXPECT_EQ(EnableMenuItem(menu, SC_MAXIMIZE, MF_BYCOMMAND), static_cast<int>(MF_GRAYED));
    EXPECT_EQ(EnableMenuItem(menu, 16, MF_BYCOMMAND), -1);
    EXPECT_TRUE(AppendMenuA(menu, MF_SEPARATOR, 0, nullptr));
    EXPECT_TRUE(AppendMenuA(menu, MF_STRING, 16, "&About"));
    EXPECT_EQ(EnableMenuItem(menu, 16, MF_BYCOMMAND), 0);
    EXPECT_EQ(EnableMenuItem(menu, 0, MF_BYCOMMAND), -1) << "a separator is no command";
    DestroyWindow(dialog);
    EXPECT_EQ(GetSystemMenu(dialog), nullptr);
    const HWND next = make();
    EXPECT_EQ(EnableMenuItem(GetSystemMenu(next), 16, MF_BYCOMMAND), -1);
    DestroyWindow(next);
}

}  // namespace
}  // namespace juntora::test
