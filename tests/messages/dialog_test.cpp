// The box that can be switched off: how it stands, what it answers, and what is remembered.
#include "platform/dialog/dialog.h"

#include <algorithm>
#include <map>
#include <optional>
#include <thread>
#include <vector>

#include "framework/CWinApp.h"
#include "messages/dnsResources.h"
#include "messages/messageFamily.h"
#include "messages/storedAnswers.h"
#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "tests/messages/CatalogueFolder.h"

namespace juntora::test {
namespace {

/// What a person saw of a box.
struct Sight {
    ViewedWindow box;
    std::map<int, ViewedWindow> controls;  ///< By id.
    std::vector<ViewedWindow> nameless;

    bool shows(int id) const { return (controls.at(id).style & WS_VISIBLE) != 0; }
    std::string label(int id) const { return controls.at(id).text; }
    RECT place(int id) const { return controls.at(id).place; }
};

/// Shows the desktop, as the program for it does, to a person who waits for the next box, looks at
/// it and uses it.
class Person {
public:
    using Act = std::function<void(HWND screen, const Sight& sight)>;

    explicit Person(const Act& act) : m_thread([this, act] { run(act); }) {
        for (DWORD count = ViewChangeCount(); FindScreen() == 0;) {
            count = AwaitViewChange(count, 100);
        }
    }
    /// One who presses controls, one after the other.
    explicit Person(const std::vector<int>& presses)
        : Person([presses](HWND, const Sight& sight) {
              for (const int id : presses) {
                  SendMessageA(sight.controls.at(id).window, BM_CLICK, 0, 0);
              }
          }) {}
    ~Person() { finish(); }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    /// What was seen; waits for it.
    const Sight& saw() {
        finish();
        return m_sight.value();
    }

private:
    void run(const Act& act) {
        const WNDCLASSA windowClass{0, DefWindowProcA, 0, 0, 0, SCREEN_WINDOW_CLASS};
        RegisterClassA(&windowClass);
        const HWND screen = CreateWindowExA(0, SCREEN_WINDOW_CLASS, "", 0, 0, 0, 0, 0, 0, 0);
        for (DWORD count = ViewChangeCount(); !look();) {
            count = AwaitViewChange(count, 10'000);
        }
        act(screen, *m_sight);
        DestroyWindow(screen);
    }
    /// A dialog is shown once it has been made whole.
    bool look() {
        const auto windows = ViewWindows();
        if (!windows || windows->empty()) {
            return false;
        }
        Sight sight{windows->front(), {}, {}};
        for (const ViewedWindow& window : *windows) {
            if (window.parent == sight.box.window) {
                (window.id == -1 ? sight.nameless.push_back(window)
                                 : void(sight.controls.emplace(window.id, window)));
            }
        }
        m_sight = sight;
        return true;
    }
    void finish() {
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

    std::optional<Sight> m_sight;
    std::thread m_thread;
};

class TestApp : public CWinApp {
public:
    bool InitInstance() override { return false; }
};

class DnsDialogTest : public CatalogueFolder {
protected:
    DnsDialogTest() {
        setenv("JUNTORA_REGISTRY", file("registry").c_str(), 1);
        write("modules.txt", "TVD d.xml\n");
        write("d.xml",
              catalogue("TVD",
                        "<message number='1' kind='error'><text>Stop.</text></message>"
                        "<message number='4' kind='warning'><text>Careful.</text></message>"
                        "<message number='5' kind='information'><text>Fine.</text></message>"
                        "<message number='7' kind='question'><text>Which?</text></message>"));
    }
    ~DnsDialogTest() override { unsetenv("JUNTORA_REGISTRY"); }

    static Sight shown(const std::string& text, unsigned style, int press = IDC_DNS_FIRST,
                       const DnsButtonLabels* labels = nullptr, int showCheckBox = 1) {
        CNVMDnsDialog dialog(text.c_str(), "TVD", 1, style, MB_ICONQUESTION, 0, showCheckBox,
                             labels);
        Person person(std::vector<int>{press});
        EXPECT_EQ(dialog.DoModal(), press);
        return person.saw();
    }
    static int ask(unsigned long number, unsigned icon = 0) {
        return showMessageDialog("TVD", number, 4, icon, 0, 1);
    }

    TestApp m_application;
};

void expectPlace(const RECT& place, int left, int top, int right, int bottom) {
    EXPECT_EQ((std::vector<int>{place.left, place.top, place.right, place.bottom}),
              (std::vector<int>{left, top, right, bottom}));
}

/// This many words of five letters, each letter 6 pixels wide, with blanks of 4 between them.
std::string words(int count) {
    std::string text = "aaaaa";
    for (int i = 1; i < count; ++i) {
        text += " aaaaa";
    }
    return text;
}

TEST_F(DnsDialogTest, TakesTheSizeOfItsText) {
    // The icon is 36 wide, and in a program without a main window lines are 336 at most.
    const Sight line = shown("Fine.", 0);
    EXPECT_EQ(line.box.text, "messages_dialog_test");
    expectPlace(line.place(IDC_DNS_TEXT), 36, 2, 61, 15);
    expectPlace(line.box.place, 160, 160, 160 + 390, 160 + 84);
    expectPlace(line.place(IDC_DNS_FIRST), 161, 33, 161 + 68, 56);
    expectPlace(line.place(IDC_DNS_CHECK), 11, 60, 236, 76);
    EXPECT_NE(line.controls.at(IDC_DNS_TEXT).style & SS_CENTER, 0U) << "in the middle";

    const Sight lines = shown(words(30), 0);
    EXPECT_EQ(lines.label(IDC_DNS_TEXT), words(10) + "\n" + words(10) + "\n" + words(10));
    EXPECT_EQ(lines.controls.at(IDC_DNS_TEXT).style & SS_CENTER, 0U);
    expectPlace(lines.place(IDC_DNS_TEXT), 36, 2, 372, 41);
    expectPlace(lines.box.place, 160, 160, 160 + 420, 160 + 110);
    EXPECT_EQ(lines.place(IDC_DNS_FIRST).top, 59);
    EXPECT_EQ(lines.place(IDC_DNS_CHECK).top, 86);

    const Sight bare = shown("Fine.", 0, IDC_DNS_FIRST, nullptr, 0);
    EXPECT_FALSE(bare.shows(IDC_DNS_CHECK));
    expectPlace(bare.box.place, 160, 160, 160 + 390, 160 + 64);
}

TEST_F(DnsDialogTest, GoesByTheMainWindow) {
    const WNDCLASSA windowClass{0, DefWindowProcA, 0, 0, 0, "Main"};
    RegisterClassA(&windowClass);
    CWnd main;
    ASSERT_TRUE(main.SubclassWindow(CreateWindowExA(0, "Main", "", 0, 0, 0, 1000, 500, 0, 0)));
    m_application.m_pMainWnd = &main;
    const Sight sight = shown(words(40), 0);
    EXPECT_EQ(sight.box.owner, main.m_hWnd);
    EXPECT_EQ(sight.box.place.left, 250);
    EXPECT_EQ(sight.box.place.top, 250);
    expectPlace(sight.place(IDC_DNS_TEXT), 36, 2, 36 + 516, 2 + 3 * 13);
    m_application.m_pMainWnd = nullptr;
    main.DestroyWindow();
}

TEST_F(DnsDialogTest, KeepsItsButtonsInReachOfAnyText) {
    const Sight pieces = shown(words(200), 0);
    std::string all = pieces.label(IDC_DNS_TEXT);
    int bottom = pieces.place(IDC_DNS_TEXT).bottom;
    for (const ViewedWindow& piece : pieces.nameless) {
        EXPECT_EQ(piece.place.top, bottom) << "one below the other";
        EXPECT_EQ(piece.place.left, 36);
        bottom = piece.place.bottom;
        all += "\n" + piece.text;
    }
    std::ranges::replace(all, '\n', ' ');
    EXPECT_EQ(all, words(200));
    EXPECT_EQ(pieces.place(IDC_DNS_FIRST).top, bottom + 18);

    const Sight cut = shown(std::string(1 << 20, 'a') + " and " + words(100'000), 0);
    EXPECT_EQ(cut.nameless.back().text.substr(cut.nameless.back().text.rfind('\n')), "\n...");
    EXPECT_EQ(cut.place(IDC_DNS_FIRST).top, 2 + 41 * 13 + 18);
    shown("", 0);
}

TEST_F(DnsDialogTest, HasTheButtonsOfItsStyle) {
    const std::string none = "hidden";
    const struct {
        unsigned style;
        std::string first, second, third;
        int left[3];
    } cases[] = {
        {0, "OK", none, none, {161, 0, 0}},
        {1, "OK", "Cancel", none, {123, 199, 0}},
        {2, "Abort", "Retry", "Ignore", {85, 161, 237}},
        {3, "Yes", "No", "Cancel", {85, 161, 237}},
        {4, "Yes", "No", none, {123, 199, 0}},
        {6, "Cancel", "Try", "Continue", {85, 161, 237}},
    };
    for (const auto& each : cases) {
        const std::string labels[] = {each.first, each.second, each.third};
        const int buttons[] = {IDC_DNS_FIRST, IDC_DNS_SECOND, IDC_DNS_THIRD};
        const int pressed = std::ranges::count(labels, none) == 0 ? IDC_DNS_THIRD : IDC_DNS_FIRST;
        const Sight sight = shown("Fine.", each.style, pressed);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(sight.shows(buttons[i]) ? sight.label(buttons[i]) : none, labels[i])
                << each.style;
            if (labels[i] != none) {
                EXPECT_EQ(sight.place(buttons[i]).left, each.left[i]) << each.style;
            }
        }
    }
    const Sight other = shown("Fine.", 5, IDC_DNS_SECOND);
    EXPECT_TRUE(other.shows(IDC_DNS_THIRD)) << "all that the template has";
    EXPECT_EQ(other.place(IDC_DNS_THIRD).top, 33);
    EXPECT_EQ(other.place(IDC_DNS_CHECK).top, 60);
}

TEST_F(DnsDialogTest, TakesLabelsOfTheCallers) {
    const DnsButtonLabels labels{"Save all", "No", "Wait"};
    const Sight two = shown("Fine.", 4, IDC_DNS_SECOND, &labels);
    EXPECT_EQ(two.label(IDC_DNS_FIRST) + two.label(IDC_DNS_SECOND), "Save allNo");
    expectPlace(two.place(IDC_DNS_FIRST), 95, 33, 95 + 96, 56);
    expectPlace(two.place(IDC_DNS_SECOND), 199, 33, 199 + 96, 56);
    const Sight three = shown("Fine.", 3, IDC_DNS_THIRD, &labels);
    EXPECT_EQ(three.label(IDC_DNS_THIRD), "Wait");
    expectPlace(three.place(IDC_DNS_FIRST), 46, 33, 46 + 96, 56);
    expectPlace(three.place(IDC_DNS_SECOND), 150, 33, 150 + 96, 56);
    expectPlace(three.place(IDC_DNS_THIRD), 254, 33, 254 + 96, 56);
    const Sight one = shown("Fine.", 0, IDC_DNS_FIRST, &labels);
    EXPECT_EQ(one.label(IDC_DNS_FIRST), "OK");
    const DnsButtonLabels missing{nullptr, nullptr, nullptr};
    EXPECT_EQ(shown("Fine.", 4, IDC_DNS_FIRST, &missing).label(IDC_DNS_FIRST), "");
}

TEST_F(DnsDialogTest, RemembersTheAnswerWhileItsBoxIsTicked) {
    setenv("TARVEX_LOG_NVM_MESSAGES", file("trace").c_str(), 1);
    const auto answer = [](const std::vector<int>& presses) {
        const Person person(presses);
        return ask(7);
    };
    EXPECT_EQ(getStoredAnswer("TVD", 7), 0);
    EXPECT_EQ(answer({IDC_DNS_SECOND}), IDC_DNS_SECOND);
    EXPECT_EQ(storedAnswer("TVD", 7), "0");
    EXPECT_EQ(answer({IDC_DNS_CHECK, IDC_DNS_SECOND}), IDC_DNS_SECOND);
    EXPECT_EQ(m_application.GetProfileString("Donot Show Dialog", "TVD-7"), "7");
    EXPECT_EQ(getStoredAnswer("TVD", 7), 7);
    EXPECT_EQ(ask(7), 7) << "and nobody is there to press anything";
    EXPECT_EQ(ask(99), -1);
    const std::string line = "QUESTION(TVD-7):  Which?\n";
    EXPECT_EQ(content(file("trace")), line + line + line);
    unsetenv("TARVEX_LOG_NVM_MESSAGES");

    for (const char* stored : {"0", ""}) {
        storeAnswer("TVD", 7, stored);
        EXPECT_EQ(answer({IDC_DNS_FIRST}), IDC_DNS_FIRST) << "\"" << stored << "\"";
        EXPECT_EQ(storedAnswer("TVD", 7), "0");
    }
    storeAnswer("TVD", 7, "yes");
    EXPECT_EQ(ask(7), 0);

    // Without the box there is nothing to tick, and an answer of before is forgotten.
    storeAnswer("TVD", 1, "7");
    shown("Fine.", 0, IDC_DNS_FIRST, nullptr, 0);
    EXPECT_EQ(storedAnswer("TVD", 1), "0");
}

TEST_F(DnsDialogTest, ForgetsNothingWhenItIsClosedOtherwise) {
    storeAnswer("TVD", 1, "7");
    CNVMDnsDialog dialog("Fine.", "TVD", 1, 3, 0, 0, 1);
    const Person person([](HWND, const Sight& sight) {
        SendMessageA(sight.controls.at(IDC_DNS_CHECK).window, BM_CLICK, 0, 0);
        PostMessageA(sight.box.window, WM_CLOSE, 0, 0);
    });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(storedAnswer("TVD", 1), "7");
}

TEST_F(DnsDialogTest, HasTheIconOfTheMessagesKindUnlessOneIsNamed) {
    const auto iconOf = [](unsigned long number, unsigned icon) {
        Person person(std::vector<int>{IDC_DNS_FIRST});
        ask(number, icon);
        std::vector<int> icons;
        for (const int id : {IDC_DNS_ICON, IDC_DNS_STOP, IDC_DNS_QUESTION}) {
            if (person.saw().shows(id)) {
                icons.push_back(id);
            }
        }
        return icons;
    };
    using Icons = std::vector<int>;
    EXPECT_EQ(iconOf(1, 0), Icons{IDC_DNS_STOP});
    EXPECT_EQ(iconOf(4, 0), Icons{IDC_DNS_ICON});
    EXPECT_EQ(iconOf(5, 0), Icons{IDC_DNS_ICON});
    EXPECT_EQ(iconOf(7, 0), Icons{IDC_DNS_QUESTION});
    EXPECT_EQ(iconOf(7, MB_ICONSTOP), Icons{IDC_DNS_STOP});
    EXPECT_EQ(iconOf(1, MB_ICONINFORMATION), Icons{IDC_DNS_ICON});
}

TEST_F(DnsDialogTest, APlainBoxHasItsIconToo) {
    const auto iconOf = [](unsigned long number, unsigned type) {
        std::string icon = "none";
        const Person person([&icon](HWND, const Sight& sight) {
            for (const ViewedWindow& control : sight.nameless) {
                icon = control.text.starts_with('#') ? control.text.substr(1) : icon;
            }
            SendMessageA(sight.controls.at(IDOK).window, BM_CLICK, 0, 0);
        });
        EXPECT_EQ(showMessageBox("TVD", number, type, 0), IDOK);
        return icon;
    };
    EXPECT_EQ(iconOf(1, 0), std::to_string(IDI_STOP));
    EXPECT_EQ(iconOf(4, 0), std::to_string(IDI_WARNING));
    EXPECT_EQ(iconOf(5, 0), std::to_string(IDI_INFORMATION));
    EXPECT_EQ(iconOf(7, 0), std::to_string(IDI_QUESTION));
    EXPECT_EQ(iconOf(7, MB_OKCANCEL), "none") << "the kind plays no part";
    EXPECT_EQ(iconOf(7, MB_ICONSTOP), std::to_string(IDI_STOP));
}

TEST_F(DnsDialogTest, IsAnsweredByItsFirstButtonWhereNobodySeesIt) {
    storeAnswer("TVD", 7, "0");
    testing::internal::CaptureStderr();
    EXPECT_EQ(ask(7), IDC_DNS_FIRST);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "[messages_dialog_test]\n    QUESTION(TVD-7):  Which?\n"
              "    (answered \"Yes\": no screen shows this desktop)\n");

    testing::internal::CaptureStderr();
    {
        // The screen goes while the box stands; ten seconds pass.
        const Person person([](HWND screen, const Sight& sight) {
            SendMessageA(sight.controls.at(IDC_DNS_CHECK).window, BM_CLICK, 0, 0);
            DestroyWindow(screen);
            for (int tick = 0; tick < 10; ++tick) {
                PostMessageA(sight.box.window, WM_TIMER, 1, 0);
            }
        });
        EXPECT_EQ(ask(7), IDC_DNS_FIRST);
    }
    EXPECT_NE(testing::internal::GetCapturedStderr().find("(answered \"Yes\""), std::string::npos);
    EXPECT_EQ(storedAnswer("TVD", 7), "0") << "nobody has ticked anything for good";
}

}  // namespace
}  // namespace juntora::test
