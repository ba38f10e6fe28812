// The victim as a sender.
#include <array>
#include <cstring>
#include <string>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/scenarios.h"

namespace juntora::test {
namespace {

constexpr UINT PROBE = WM_APP + 1;
constexpr UINT HELLO = WM_APP + 2;
constexpr int POSTS = 3;

/// A parameter that tells whether it belongs to the other one.
LPARAM partnerOf(WPARAM wParam) { return static_cast<LPARAM>(wParam * 0x9E3779B97F4A7C15ULL); }

WPARAM parameter(const Board& board, int index) {
    return static_cast<WPARAM>(board.round) * 16 + static_cast<WPARAM>(index);
}

class Posting : public LayerScenario {
public:
    std::string name() const override { return "posting"; }
    /// The post of a whole process goes before that of one that dies: it must arrive after every
    /// death that came before.
    void prepare() override {
        LayerScenario::prepare();
        board->notes[0] = PostMessageA(survivorWindow(), HELLO, parameter(*board, 0), 0);
    }
    void operate() override {
        for (int i = 0; i < POSTS; ++i) {
            const WPARAM wParam = parameter(*board, i);
            board->notes[1] += PostMessageA(survivorWindow(), PROBE, wParam, partnerOf(wParam));
        }
    }
    void mend() override { PostMessageA(survivorWindow(), PROBE, 0, 0); }

protected:
    LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == HELLO) {
            m_greeted = m_greeted || wParam == parameter(*board, 0);
        } else if (message == PROBE && wParam != 0) {
            m_whole = m_whole && lParam == partnerOf(wParam);
            m_taken.push_back(wParam);
        } else if (message != PROBE) {
            return LayerScenario::onMessage(window, message, wParam, lParam);
        }
        return 0;
    }
    void look(Findings& findings) override {
        serve();
        findings.expect(board->notes[0] == 1 && m_greeted, "a whole post did not arrive");
        findings.expect(m_whole, "half a message arrived");
        const auto posted = static_cast<std::size_t>(board->notes[1].load());
        findings.expect(m_taken.size() >= posted && m_taken.size() <= POSTS,
                        std::to_string(m_taken.size()) + " messages came of " +
                            std::to_string(posted) + " that were posted");
        for (std::size_t i = 0; i < m_taken.size(); ++i) {
            findings.expect(m_taken[i] == parameter(*board, static_cast<int>(i)),
                            "message " + std::to_string(i) + " is another");
        }
        m_taken.clear();
        m_greeted = false;
        m_whole = true;
    }

private:
    std::vector<WPARAM> m_taken;
    bool m_greeted = false;
    bool m_whole = true;
};

/// A plain message, and the survivor at the other end.
class Sending : public LayerScenario {
public:
    std::string name() const override { return "sending"; }
    void prepare() override {
        LayerScenario::prepare();
        board->notes[0] = send(0) == answerTo(0);
    }
    void operate() override { board->notes[1] = send(1) == answerTo(1) ? 1 : 2; }
    void mend() override { send(2); }

protected:
    LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message != PROBE) {
            return LayerScenario::onMessage(window, message, wParam, lParam);
        }
        m_whole = m_whole && lParam == partnerOf(wParam);
        m_served[wParam % m_served.size()] += 1;
        return static_cast<LRESULT>(wParam) + 1;
    }
    void look(Findings& findings) override {
        serve();
        findings.expect(board->notes[0] == 1 && m_served[0] == 1, "a whole send was not served");
        findings.expect(m_whole, "half a message arrived");
        findings.expect(board->notes[1] != 2, "a sender got another's answer");
        findings.expect(m_served[1] <= 1, "a message was served twice");
        findings.expect(m_served[1] == 1 || board->notes[1] == 0, "a message was not served");
        m_served = {};
        m_whole = true;
    }

private:
    LRESULT send(int which) {
        const WPARAM wParam = parameter(*board, which);
        return SendMessageA(survivorWindow(), PROBE, wParam, partnerOf(wParam));
    }
    LRESULT answerTo(int which) const { return static_cast<LRESULT>(parameter(*board, which)) + 1; }

    std::array<int, 16> m_served{};
    bool m_whole = true;
};

/// A text there, and one back.
class SendingText : public LayerScenario {
public:
    std::string name() const override { return "sendingText"; }
    void prepare() override {
        LayerScenario::prepare();
        board->notes[0] = exchange();
    }
    void operate() override { board->notes[1] = exchange() ? 1 : 2; }
    void mend() override { exchange(); }

protected:
    LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == LB_ADDSTRING) {
            const std::string text = reinterpret_cast<const char*>(lParam);
            m_whole = m_whole && text == std::string(LENGTH, static_cast<char>(wParam));
            return static_cast<LRESULT>(text.size());
        }
        if (message == LB_GETTEXTLEN || message == LB_GETTEXT) {
            if (message == LB_GETTEXT) {
                std::memset(reinterpret_cast<char*>(lParam), 'r', LENGTH);
                reinterpret_cast<char*>(lParam)[LENGTH] = '\0';
            }
            return LENGTH;
        }
        return LayerScenario::onMessage(window, message, wParam, lParam);
    }
    void look(Findings& findings) override {
        serve();
        findings.expect(board->notes[0] == 1, "a whole exchange of texts failed");
        findings.expect(m_whole, "half a text arrived");
        findings.expect(board->notes[1] != 2, "the victim's exchange of texts failed");
        m_whole = true;
    }

private:
    static constexpr int LENGTH = 300;

    bool exchange() {
        const auto letter = static_cast<char>('a' + board->round % 26);
        const std::string there(LENGTH, letter);
        std::array<char, LENGTH + 1> back{};
        const LRESULT taken =
            SendMessageA(survivorWindow(), LB_ADDSTRING, static_cast<WPARAM>(letter),
                         reinterpret_cast<LPARAM>(there.c_str()));
        const LRESULT got =
            SendMessageA(survivorWindow(), LB_GETTEXT, 0, reinterpret_cast<LPARAM>(back.data()));
        return taken == LENGTH && got == LENGTH && std::string(LENGTH, 'r') == back.data();
    }

    bool m_whole = true;
};

const Registration<Posting, Sending, SendingText> registration;

}  // namespace
}  // namespace juntora::test
