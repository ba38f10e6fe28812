// Windows: made, unmade, retitled.
#include <memory>
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

protected:
    void look(Findings&) override {}  // What is looked for after every death is all there is to it.
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

protected:
    void look(Findings&) override {}
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

protected:
    void look(Findings&) override {}

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

}  // namespace

void addWindowScenarios(Scenarios& all) {
    all.push_back([] { return std::make_unique<Creating>(); });
    all.push_back([] { return std::make_unique<CreatingChild>(); });
    all.push_back([] { return std::make_unique<Destroying>(); });
    all.push_back([] { return std::make_unique<Retitling>(); });
}

}  // namespace juntora::test
