// Signing on and off, at a hub that serves others too.
#include <array>
#include <optional>
#include <stdexcept>
#include <string>

#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/SlotWatch.h"
#include "tests/death/scenarios.h"
#include "tests/support/ChildProcess.h"

namespace juntora::test {
namespace {

constexpr char VICTIM_TOOL[] = "Victim";
constexpr int NAME_CAPACITY = 80;

bool attach(const char* name, HWND window) {
    std::array<char, NAME_CAPACITY + 1> unique{};
    int capacity = NAME_CAPACITY;
    return ipcAttach(name, window, unique.data(), &capacity, 0) == window &&
           unique.data() == std::string(name) + ";0";
}

/// The survivor is a tool too, and keeps the hub running.
class AtHub : public LayerScenario {
public:
    void settle() override {
        LayerScenario::settle();
        // Planchet would be started beside the tools; nobody looks at it here.
        m_planchet = CreateMutexA(false, "TarvexVoltaraPlanchetFindWnd16.6.0");
        m_hub.emplace("juntora");
        const std::int64_t deadline = monotonicNanoseconds() + 10'000'000'000;
        while (monitor() == 0 || !ipcFindHub()) {
            if (monotonicNanoseconds() > deadline || !m_hub->isRunning()) {
                throw std::runtime_error("the hub did not come up");
            }
            Sleep(1);
        }
        if (!attach("Survivor", survivorWindow())) {
            throw std::runtime_error("the survivor cannot sign on");
        }
    }

protected:
    bool expectsOthers() const override { return true; }
    void look(Findings& findings) override {
        findings.expect(m_hub->isRunning(), "the hub is gone");
        // Behind what the dead one has sent: its slot is the hub's until then.
        findings.expect(ipcIsAlive(survivorWindow()) == 1, "the hub does not know the survivor");
        const int taken = reclaimSlots(findings);
        findings.expect(taken <= 1, std::to_string(taken) + " slots are taken");
        SendMessageA(monitor(), WM_TIMER, 1, 0);  // The clock by which it looks after its tools.
        const auto dead = static_cast<HWND>(board->notes[0].load());
        findings.expect(ipcFindApp(VICTIM_TOOL) == 0, "the hub still finds the dead one");
        findings.expect(ipcIsAlive(dead) == 0, "the hub holds the dead one for alive");
        checkSigningOn(findings);
        DispatchWaitingMessages();
    }

private:
    static HWND monitor() { return FindWindowA("#32770", "Application Activity"); }

    /// Somebody else comes and goes: another window of this process.
    void checkSigningOn(Findings& findings) {
        const HWND window = CreateWindowExA(0, SURVIVOR_CLASS, "Tool", 0, 0, 0, 0, 0, 0, 0);
        ipcSelfId = window;
        const std::string text = std::string(VICTIM_TOOL) + " " + std::to_string(IPC_VERSION);
        std::array<char, NAME_CAPACITY + 1> answer{};
        int capacity = NAME_CAPACITY;
        const int result = ipcSend(IPC_SIGN_ON, text.c_str(), 0, answer.data(), &capacity);
        const bool named = std::string(answer.data()).ends_with(std::string(VICTIM_TOOL) + ";0");
        findings.expect(result == 1 && named,
                        "a new tool is answered \"" + std::string(answer.data()) + "\"");
        capacity = NAME_CAPACITY;
        findings.expect(ipcSend(IPC_SIGN_OFF, nullptr, 0, answer.data(), &capacity) == 1,
                        "a new tool cannot sign off");
        ipcSelfId = survivorWindow();
        DestroyWindow(window);
    }

    HANDLE m_planchet = nullptr;
    std::optional<ChildProcess> m_hub;
};

class SigningOn : public AtHub {
public:
    std::string name() const override { return "signingOn"; }
    void prepare() override {
        LayerScenario::prepare();
        board->notes[0] = makeVictimWindow();
    }
    void operate() override { attach(VICTIM_TOOL, static_cast<HWND>(board->victimWindow.load())); }
};

class SigningOff : public AtHub {
public:
    std::string name() const override { return "signingOff"; }
    void prepare() override {
        LayerScenario::prepare();
        board->notes[0] = makeVictimWindow();
        board->notes[1] = attach(VICTIM_TOOL, static_cast<HWND>(board->notes[0].load())) ? 1 : 2;
    }
    void operate() override { ipcDetach(); }

protected:
    void look(Findings& findings) override {
        findings.expect(board->notes[1] == 1, "the victim could not sign on");
        AtHub::look(findings);
    }
};

const Registration<SigningOn, SigningOff> registration;

}  // namespace
}  // namespace juntora::test
