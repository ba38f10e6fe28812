// Windows: made, unmade, retitled. What is looked for after every death is nearly all there is to
// it.
#include <string>

#include "platform/desktop/window.h"
#include "tests/death/LayerScenario.h"
#include "tests/death/scenarios.h"

namespace juntora::test {
namespace {

/// The victim's first window: its queue is made with it.
class Creating : public LayerScenario {
public:
    std::string name() const override { return "creatingAWindow"; }
    void operate() override { makeVictimWindow(); }
};

/// A child of another process's window.
class CreatingChild : public LayerScenario {
public:
    std::string name() const override { return "creatingAChildWindow"; }
    void prepare() override {
        LayerScenario::prepare();
        DestroyWindow(makeVictimWindow());
    }
    void operate() override { makeVictimWindow(survivorWindow()); }
};

/// A window with a child, in front of another one of the same thread.
class Destroying : public LayerScenario {
public:
    std::string name() const override { return "destroyingAWindow"; }
    void prepare() override {
        LayerScenario::prepare();
        makeVictimWindow();
        m_window = makeVictimWindow();
        makeVictimWindow(m_window);
    }
    void operate() override { DestroyWindow(m_window); }

private:
    HWND m_window = 0;
};

/// A title, by which the window is found; the survivor's windows lie in the same index.
class Retitling : public LayerScenario {
public:
    std::string name() const override { return "retitlingAWindow"; }
    void prepare() override {
        LayerScenario::prepare();
        makeVictimWindow();
    }
    void operate() override {
        SetWindowTextA(static_cast<HWND>(board->victimWindow.load()), SURVIVOR_TITLE);
    }

protected:
    void look(Findings& findings) override {
        findings.expect(FindWindowA(VICTIM_CLASS, SURVIVOR_TITLE) == 0,
                        "the dead one's window is found by its new title");
    }
};

const Registration<Creating, CreatingChild, Destroying, Retitling> registration;

}  // namespace
}  // namespace juntora::test
