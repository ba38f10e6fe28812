// The victim as a receiver: the survivor waits on it.
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/Marker.h"
#include "tests/death/scenarios.h"

namespace juntora::test {

namespace {

constexpr UINT PROBE = WM_APP + 1;
constexpr UINT BACK = WM_APP + 2;
constexpr LRESULT ANSWER = 0x1234567;
constexpr LRESULT PENDING = -1'000;

/// What the board's notes are here.
enum Note { RESULT, RETURNED_AT, STARVED, SERVED, SECOND };

/// Nanoseconds for which this process was ready to run and no core was free.
std::int64_t starvedNanoseconds() {
    std::ifstream file("/proc/self/schedstat");
    std::int64_t run = 0;
    std::int64_t starved = 0;
    file >> run >> starved;
    return starved;
}

class Answering : public LayerScenario {
public:
    std::string name() const override { return "answering"; }
    /// With the survivor's message already waiting, so that every death meets the same.
    void prepare() override {
        LayerScenario::prepare();
        board->notes[RESULT] = PENDING;
        makeVictimWindow();
        pollfd mail{GetQueueDescriptor(), POLLIN, 0};
        DispatchWaitingMessages();
        mark(Mark::READY);
        poll(&mail, 1, -1);
    }
    void operate() override {
        while (board->notes[SERVED] == 0) {
            DispatchWaitingMessages();
        }
    }
    void attend() override { waitForAnswer(0); }

protected:
    /// Sends, and notes what came of it, in the notes from `first` on.
    void waitForAnswer(int first) {
        const auto victim = static_cast<HWND>(board->victimWindow.load());
        const std::int64_t starved = starvedNanoseconds();
        board->notes[first + RESULT] = ask(victim);
        board->notes[first + RETURNED_AT] = monotonicNanoseconds();
        board->notes[first + STARVED] = starvedNanoseconds() - starved;
    }
    void checkAnswer(Findings& findings, int first) {
        const std::int64_t result = board->notes[first + RESULT];
        findings.expect(result == 0 || result == ANSWER,
                        "the sender got " + std::to_string(result));
        findings.expect(result != ANSWER || board->notes[SERVED] == 1,
                        "an answer came that nobody gave");
        const std::int64_t late =
            board->notes[first + RETURNED_AT] - board->diedAt - board->notes[first + STARVED];
        findings.expect(
            late <= SENDER_PATIENCE_NANOSECONDS,
            "the sender was told " + std::to_string(late / 1'000'000) + " ms after the death");
    }
    virtual LRESULT ask(HWND victim) { return SendMessageA(victim, PROBE, 7, 9); }
    virtual LRESULT answer() { return ANSWER; }
    LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != PROBE) {
            return LayerScenario::onMessage(window, message, wParam, lParam);
        }
        board->notes[SERVED] = 1;
        return wParam == 7 && lParam == 9 ? answer() : 0;
    }
    void look(Findings& findings) override {
        checkAnswer(findings, 0);
        const auto dead = static_cast<HWND>(board->victimWindow.load());
        findings.expect(SendMessageA(dead, PROBE, 7, 9) == 0, "a dead window answers");
        findings.expect(PostMessageA(dead, PROBE, 7, 9) == 0, "a dead window takes posts");
    }
};

/// Two senders wait: the kernel tells one of them alone of a death.
class AnsweringTwo : public Answering {
public:
    std::string name() const override { return "answeringTwo"; }
    void attend() override {
        m_second = fork();
        if (m_second == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            waitForAnswer(SECOND);
            std::exit(0);
        }
        waitForAnswer(0);
    }

protected:
    void look(Findings& findings) override {
        int status = -1;
        waitpid(m_second, &status, 0);
        findings.expect(status == 0, "the other sender ended with " + std::to_string(status));
        checkAnswer(findings, SECOND);
        Answering::look(findings);
    }

private:
    pid_t m_second = -1;
};

/// Asleep in its message loop until the message comes.
class AnsweringInLoop : public Answering {
public:
    std::string name() const override { return "answeringInTheLoop"; }
    void prepare() override {
        LayerScenario::prepare();
        board->notes[RESULT] = PENDING;
        makeVictimWindow();
        mark(Mark::READY);
    }
    void operate() override {
        MSG message{};
        while (GetMessageA(&message, 0, 0, 0) > 0) {
            DispatchMessageA(&message);
        }
    }

protected:
    LRESULT answer() override {
        PostQuitMessage(0);
        return ANSWER;
    }
};

/// A text is asked for.
class AnsweringText : public Answering {
public:
    std::string name() const override { return "answeringText"; }

protected:
    LRESULT ask(HWND victim) override {
        std::string buffer(LENGTH + 1, '\0');
        const LRESULT length =
            SendMessageA(victim, LB_GETTEXT, 7, reinterpret_cast<LPARAM>(buffer.data()));
        if (length == 0) {
            return 0;
        }
        return length == LENGTH && buffer == std::string(LENGTH, 't') + '\0' ? ANSWER : -1;
    }
    LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != LB_GETTEXT) {
            return Answering::onMessage(window, message, wParam, lParam);
        }
        std::memset(reinterpret_cast<char*>(lParam), 't', LENGTH);
        reinterpret_cast<char*>(lParam)[LENGTH] = '\0';
        board->notes[SERVED] = 1;
        return LENGTH;
    }

private:
    static constexpr LRESULT LENGTH = 300;
};

/// The victim asks back before it answers, and the survivor serves it while it waits.
class AnsweringWithAQuestion : public Answering {
public:
    std::string name() const override { return "answeringWithAQuestion"; }

protected:
    LRESULT answer() override {
        return SendMessageA(survivorWindow(), BACK, 1, 2) == 3 ? ANSWER : -1;
    }
    LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == BACK) {
            return static_cast<LRESULT>(wParam) + lParam;
        }
        return Answering::onMessage(window, message, wParam, lParam);
    }
};

}  // namespace

void addAnswerScenarios(Scenarios& all) {
    all.push_back([] { return std::make_unique<Answering>(); });
    all.push_back([] { return std::make_unique<AnsweringTwo>(); });
    all.push_back([] { return std::make_unique<AnsweringInLoop>(); });
    all.push_back([] { return std::make_unique<AnsweringText>(); });
    all.push_back([] { return std::make_unique<AnsweringWithAQuestion>(); });
}

}  // namespace juntora::test
