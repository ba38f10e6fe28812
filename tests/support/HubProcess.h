// A real hub on the test's desktop, and tools of the test's own that are attached to it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/types.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {

class HubProcess : public TestDesktop {
protected:
    HubProcess();
    ~HubProcess() override;

    /// Starts a hub and waits until it can be found. `program` and `environment` as ChildProcess
    /// takes them.
    void startHub(std::vector<std::string> arguments = {}, const std::string& program = "juntora",
                  const std::vector<std::string>& environment = {});
    static HWND hubWindow();
    static HWND mainDialog();
    static HWND monitor();
    static HWND listBox();

    /// Makes a window of the calling thread that closes when it is asked to, and signs it on.
    HWND attach(const std::string& name);
    static HWND makeTool();
    static bool signOn(HWND tool, const std::string& name);
    static void signOff(HWND tool);
    /// A word of opcode 30 for the hub itself.
    static int command(HWND tool, const char* word);
    /// Lets the monitor's clock tick.
    static void tick();

    /// The hub's exit code once it has ended; nothing when it still runs after `timeout`.
    std::optional<int> hubResult(ChildProcess::Milliseconds timeout = ChildProcess::PATIENCE);
    /// Whether everything that was posted to the main dialog before has been dealt with, and the
    /// hub runs on.
    bool hubGoesOn() const;

    std::optional<ChildProcess> m_hub;

    /// By default the test holds the mutex of a running Planchet, lest a real one beside the hub
    /// takes part. From here on it does not.
    void releasePlanchet();

private:
    HANDLE m_planchetMutex;
};

/// Serves the calling thread's messages until the condition holds. False when it does not in time.
bool waitFor(const std::function<bool()>& condition);

/// Tools of the test in the order in which they were closed; and whether each was in front then.
struct Closed {
    HWND window;
    bool wasInFront;
};
std::vector<Closed>& closedTools();

}  // namespace juntora::test
