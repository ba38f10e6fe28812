// What all scenarios on the layer have in common: a desktop, a survivor with a window, and the look
// at what every death may harm.
#pragma once

#include <functional>

#include "platform/types.h"
#include "tests/death/Scenario.h"

namespace juntora::test {

inline constexpr char VICTIM_CLASS[] = "DeathVictim";
inline constexpr char VICTIM_TITLE[] = "The whole title of the victim's window";
inline constexpr char SURVIVOR_CLASS[] = "DeathSurvivor";
inline constexpr char SURVIVOR_TITLE[] = "Survivor";

/// How long a sender may wait for its 0 once its receiver has died.
inline constexpr std::int64_t SENDER_PATIENCE_NANOSECONDS = 100'000'000;

/// Runs `work` in a forked child that opens the desktop for itself and leaves it in order, and adds
/// its complaints. The next operation of somebody new.
void inFreshProcess(Findings& findings, const std::function<void(Findings&)>& work);

class LayerScenario : public Scenario {
public:
    /// Opens the desktop and makes the survivor's window.
    void settle() override;
    int descriptor() override;
    void serve() override;
    /// Nothing of the dead is left and nothing is half-done; then, what the scenario looks for.
    void check(Findings& findings) final;

    /// Opens the desktop and registers the window class.
    void prepare() override;
    /// The same, for the mender.
    void prepareMending() override;
    /// Finds what is there and makes a window: takes the segment's lock, meets the dead one's.
    void mend() override;

protected:
    /// Where the survivor's window stands on the board.
    HWND survivorWindow() const { return static_cast<HWND>(board->survivorWindow.load()); }
    /// Makes a window of the victim's class with all its marks, and writes it on the board.
    HWND makeVictimWindow(HWND parent = 0);
    /// What the window's procedure does beyond the usual, in whatever process.
    virtual LRESULT onMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    /// What is not looked for after every death.
    virtual void look(Findings&) {}
    /// Whether processes beside those of the run have windows on the desktop.
    virtual bool expectsOthers() const { return false; }

private:
    static LRESULT procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void registerClasses();
    void checkWindows(Findings& findings);
    void checkMaking(Findings& findings);

    static LayerScenario* s_current;
};

}  // namespace juntora::test
