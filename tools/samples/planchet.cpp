// The project manager, as far as the hub can tell: it comes up beside the other tools, and ends
// when they have gone.
#include <cstdio>

#include "platform/desktop/message.h"
#include "platform/kernel/process.h"
#include "platform/kernel/signals.h"
#include "platform/kernel/sync.h"
#include "tools/toolkit/ActivityReader.h"
#include "tools/toolkit/ToolWindow.h"

namespace juntora {
namespace {

/// By this name a running Planchet is known: of its mutex and of its window's class.
constexpr char PLANCHET_NAME[] = "TarvexVoltaraPlanchetFindWnd16.6.0";
constexpr char PLANCHET_TITLE[] = "Voltara Planchet Manager";
constexpr char ROWS_WORD[] = "JUNTORA_ANY_APPS_RUNNING";

constexpr DWORD LOOK_EVERY = 1'000;
/// The hub starts this program before the tool that started the hub has signed on, and a person may
/// take a while to start the first one. A tool that was there too briefly to be seen must not keep
/// the hub up for ever either.
constexpr DWORD FIRST_TOOL_WAIT = 60'000;

/// Keeps the mutex from the first Planchet's start to its end.
class RunningMark {
public:
    RunningMark() : m_mutex(CreateMutexA(false, PLANCHET_NAME)) {
        m_isFirst = m_mutex != nullptr && GetLastError() != ERROR_ALREADY_EXISTS;
    }
    ~RunningMark() {
        if (m_mutex != nullptr) {
            CloseHandle(m_mutex);
        }
    }
    RunningMark(const RunningMark&) = delete;
    RunningMark& operator=(const RunningMark&) = delete;

    bool isFirst() const { return m_isFirst; }

private:
    HANDLE m_mutex;
    bool m_isFirst = false;
};

class Planchet : public ToolWindow {
public:
    Planchet() : ToolWindow(PLANCHET_NAME, PLANCHET_TITLE) {}

    void lookForTools() {
        m_started = GetTickCount();
        m_hasLines = m_activity.find(ipcHubWindow);
        countTools();
        startTimer(LOOK_EVERY);
    }

private:
    int onRecord(int, const IpcMessage&) override { return 1; }

    void onTimer() override {
        if (!hubIsThere()) {
            PostQuitMessage(0);
            return;
        }
        // The hub is asked only when its lines have changed, so that nothing wakes it while all
        // rests. Whoever has come and gone since the last look was there too.
        if (m_activity.hasNews()) {
            m_hasSeenTools = m_hasSeenTools || m_hasLines;
            countTools();
        }
        const bool hasWaited = GetTickCount() - m_started >= FIRST_TOOL_WAIT;
        if (m_isAlone && (m_hasSeenTools || hasWaited)) {
            PostQuitMessage(0);
        }
    }

    void countTools() {
        m_activity.hasNews();
        m_isAlone = ipcCommand(ROWS_WORD, 0) <= 1;
        m_hasSeenTools = m_hasSeenTools || !m_isAlone;
    }

    ActivityReader m_activity;
    bool m_hasLines = false;
    DWORD m_started = 0;
    bool m_isAlone = true;
    bool m_hasSeenTools = false;
};

int runPlanchet() {
    const RunningMark mark;
    if (!mark.isFirst()) {
        return 0;
    }
    Planchet planchet;
    if (planchet.handle() == 0 || !QuitOnSignals() ||
        planchet.signOn("Planchet", true) != ToolWindow::SignOn::DONE) {
        std::fprintf(stderr, "Planchet: not signed on, as the hub cannot be reached or refused\n");
        return 1;
    }
    planchet.lookForTools();
    return planchet.run();
}

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) {
    juntora::SetProgramArguments(argc, argv);
    return juntora::runPlanchet();
}
