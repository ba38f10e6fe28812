// The victim as a receiver: the survivor waits on it.
#include <poll.h>

#include <cstring>
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
enum Note { RESULT, RETURNED_AT, SERVED };

class Answering : public LayerScenario {
public:
    std::string name() const override { return "answering"; }
    void prepare() override {
        LayerScenario::prepare();
        board->notes[RESULT] = PENDING;
        makeVictimWindow();
        getReady();
    }
    void operate() override {
        while (board->notes[SERVED] == 0) {
            DispatchWaitingMessages();
        }
    }
    void attend() override {
        const auto victim = static_cast<HWND>(board->victimWindow.load());
        board->notes[RESULT] = ask(victim);
        board->notes[RETURNED_AT] = monotonicNanoseconds();
    }

protected:
    /// With the survivor's message already waiting, so that every death meets the same.
    virtual void getReady() {
        pollfd mail{GetQueueDescriptor(), POLLIN, 0};
        DispatchWaitingMessages();
        mark(Mark::READY);
        poll(&mail, 1, -1);
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
        const std::int64_t result = board->notes[RESULT];
        findings.expect(result == 0 || result == ANSWER,
                        "the sender got " + std::to_string(result));
        findings.expect(result != ANSWER || board->notes[SERVED] == 1,
                        "an answer came that nobody gave");
        const std::int64_t late = board->notes[RETURNED_AT] - board->diedAt;
        findings.expect(
            late <= SENDER_PATIENCE_NANOSECONDS,
            "the sender was told " + std::to_string(late / 1'000'000) + " ms after the death");
        const auto dead = static_cast<HWND>(board->victimWindow.load());
        findings.expect(SendMessageA(dead, PROBE, 7, 9) == 0, "a dead window answers");
        findings.expect(PostMessageA(dead, PROBE, 7, 9) == 0, "a dead window takes posts");
    }
};

/// Asleep in its message loop until the message comes.
class AnsweringInLoop : public Answering {
public:
    std::string name() const override { return "answeringInTheLoop"; }
    void operate() override {
        MSG message{};
        while (GetMessageA(&message, 0, 0, 0) > 0) {
            DispatchMessageA(&message);
        }
    }

protected:
    void getReady() override { mark(Mark::READY); }
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

const Registration<Answering, AnsweringInLoop, AnsweringText, AnsweringWithAQuestion> registration;

}  // namespace
}  // namespace juntora::test
