// Coming to a desktop, leaving it, and the names of messages.
#include <cstdlib>
#include <string>

#include "platform/desktop/desktop.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/scenarios.h"

namespace juntora::test {
namespace {

void useDesktop(Findings& findings, Board& board) {
    if (!findings.expect(OpenDesktop(), "the desktop cannot be opened")) {
        return;
    }
    const WNDCLASSA windowClass{0, &DefWindowProcA, 0, 0, 0, "Newcomer"};
    RegisterClassA(&windowClass);
    const HWND window = CreateWindowExA(0, "Newcomer", "New", 0, 0, 0, 10, 10, 0, 0);
    findings.expect(window != 0 && FindWindowA("Newcomer", "New") == window,
                    "no window can be made and found");
    findings.expect(FindWindowA(VICTIM_CLASS, nullptr) == 0, "the dead one's window is found");
    findings.expect(
        !IsWindow(static_cast<HWND>(board.victimWindow.load())) || board.victimWindow == 0,
        "the dead one's window is still a window");
}

/// A desktop on which others are, and then a newcomer.
class AmongOthers : public LayerScenario {
protected:
    void look(Findings& findings) override {
        inFreshProcess(findings, [this](Findings& own) { useDesktop(own, *board); });
    }
};

class Opening : public AmongOthers {
public:
    std::string name() const override { return "openingTheDesktop"; }
    void prepare() override {}
    void operate() override { OpenDesktop(); }
    void prepareMending() override {}
    void mend() override {
        OpenDesktop();
        LayerScenario::prepareMending();
        LayerScenario::mend();
    }
};

/// With a queue and a window.
class Leaving : public AmongOthers {
public:
    std::string name() const override { return "leavingTheDesktop"; }
    void prepare() override {
        LayerScenario::prepare();
        makeVictimWindow();
    }
    void operate() override { std::exit(0); }
};

/// A desktop on which nobody is: the survivor looks through processes of its own that come and go.
class Alone : public Scenario {
public:
    void check(Findings& findings) override {
        for (int newcomer = 0; newcomer < 2; ++newcomer) {
            inFreshProcess(findings, [this](Findings& own) { useDesktop(own, *board); });
        }
    }
    void mend() override {
        Findings unused;
        useDesktop(unused, *board);
    }
};

class FirstOpening : public Alone {
public:
    std::string name() const override { return "openingTheDesktopFirst"; }
    void operate() override { OpenDesktop(); }
};

class LastLeaving : public Alone {
public:
    std::string name() const override { return "leavingTheDesktopLast"; }
    void prepare() override {
        Findings unused;
        useDesktop(unused, *board);
    }
    void operate() override { std::exit(0); }
};

/// A name that is new to the desktop in each round, beside one that is not.
class Naming : public LayerScenario {
public:
    std::string name() const override { return "registeringAMessage"; }
    void settle() override {
        LayerScenario::settle();
        m_known = RegisterWindowMessageA(KNOWN);
    }
    void operate() override {
        board->notes[0] = RegisterWindowMessageA(newName().c_str());
        board->notes[1] = RegisterWindowMessageA(KNOWN);
    }
    void mend() override { RegisterWindowMessageA(("mended " + newName()).c_str()); }

protected:
    void look(Findings& findings) override {
        const auto told = static_cast<UINT>(board->notes[0].load());
        const UINT number = RegisterWindowMessageA(newName().c_str());
        findings.expect(number >= FIRST_REGISTERED_MESSAGE && number <= 0xFFFF,
                        "a name gets the number " + std::to_string(number));
        findings.expect(number > m_last, "a new name shares the number of an older one");
        findings.expect(told == 0 || told == number, "a name changed its number");
        findings.expect(board->notes[1] == 0 || board->notes[1] == m_known,
                        "the victim got another number for a known name");
        findings.expect(RegisterWindowMessageA(newName().c_str()) == number,
                        "the second answer for a name is another");
        findings.expect(RegisterWindowMessageA(KNOWN) == m_known, "a known name's number changed");
        m_last = number;
    }

private:
    static constexpr char KNOWN[] = "known to all";
    std::string newName() const { return "name of round " + std::to_string(board->round); }

    UINT m_known = 0;
    UINT m_last = 0;
};

const Registration<Opening, FirstOpening, Leaving, LastLeaving, Naming> registration;

}  // namespace
}  // namespace juntora::test
