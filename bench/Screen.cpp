#include "bench/Screen.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "bench/Statistics.h"
#include "bench/Tool.h"
#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/DisplayServer.h"

namespace juntora::bench {
namespace {

constexpr int LINES = 10'000;
constexpr int OTHERS = 500;             ///< Files that come and go beside those that are held.
constexpr WPARAM SHOW_ACTIVITY = 1000;  ///< The main dialog's command.
constexpr WPARAM HIDE_ACTIVITY = 2;     ///< The activity dialog's.

/// The time that all threads of a process have run, in seconds.
double runSeconds(pid_t process) {
    double nanoseconds = 0;
    const std::string threads = "/proc/" + std::to_string(process) + "/task";
    for (const auto& thread : std::filesystem::directory_iterator(threads)) {
        double ran = 0;
        std::ifstream(thread.path() / "schedstat") >> ran;
        nanoseconds += ran;
    }
    return nanoseconds / 1e9;
}

/// A display in memory, and the desktop shown on it.
class Shown {
public:
    Shown()
        : m_screen(
              "juntora-screen", {},
              {{"DISPLAY=" + m_server.name(), "QT_QPA_PLATFORM=xcb", "QT_STYLE_OVERRIDE=Fusion"}}) {
        while (FindScreen() == 0) {
            if (!m_screen.isRunning()) {
                throw std::runtime_error("the desktop cannot be shown: is Xvfb installed?");
            }
            Sleep(1);
        }
    }
    pid_t screen() const { return m_screen.pid(); }

private:
    test::DisplayServer m_server;
    test::ChildProcess m_screen;
};

struct Shares {
    double hub;
    double screen;
};

/// Of one core, while 1,000 lines a second come or go.
Shares sharesAtThousandChanges(const Files& files, pid_t hub, pid_t screen) {
    constexpr int CHANGES = 5000;
    constexpr auto STEP = std::chrono::milliseconds(1);
    const double hubBefore = runSeconds(hub);
    const double screenBefore = runSeconds(screen);
    const auto start = Clock::now();
    for (int i = 0; i < CHANGES; ++i) {
        std::this_thread::sleep_until(start + i * STEP);
        const int number = LINES + i / 2 % OTHERS;
        i % 2 == 0 ? files.open(number) : files.close(number);
    }
    const double seconds = microsecondsSince(start) / 1e6;
    return {(runSeconds(hub) - hubBefore) / seconds, (runSeconds(screen) - screenBefore) / seconds};
}

}  // namespace

void benchScreen(pid_t hub, const std::string& folder) {
    const Shown shown;
    Files files(folder);
    for (int i = 0; i < LINES + OTHERS; ++i) {
        const std::ofstream file(files.path(i));
    }
    files.grow(LINES);
    const HWND monitor = FindWindowA(nullptr, "Application Activity");
    const Shares hidden = sharesAtThousandChanges(files, hub, shown.screen());
    SendMessageA(FindWindowA("#32770", HUB_WINDOW_TITLE), WM_COMMAND, SHOW_ACTIVITY, 0);
    const Shares seen = sharesAtThousandChanges(files, hub, shown.screen());
    SendMessageA(monitor, WM_COMMAND, HIDE_ACTIVITY, 0);
    files.clear();
    std::printf("1,000 changes a second to an activity list of 10,000 lines, of one core\n");
    printRow("hub, list hidden", 100 * hidden.hub, "%");
    printRow("hub, list shown", 100 * seen.hub, "%");
    printRow("screen, list hidden", 100 * hidden.screen, "%");
    printRow("screen, list shown", 100 * seen.screen, "%");
    printRatio("the hub's share, list shown", seen.hub, 0.05, true);
}

}  // namespace juntora::bench
