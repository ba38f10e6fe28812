// Measures the hub against what the machine can do and against a message bus, all in one run and
// interleaved, since the machines that this runs on are shared. Figures are to be read as ratios.
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <functional>
#include <set>
#include <string>

#include "bench/Automation.h"
#include "bench/Bus.h"
#include "bench/Library.h"
#include "bench/Messages.h"
#include "bench/PingPong.h"
#include "bench/Registration.h"
#include "bench/Registry.h"
#include "bench/Requests.h"
#include "bench/Screen.h"
#include "bench/Settings.h"
#include "bench/Statistics.h"
#include "bench/Tool.h"
#include "bench/Wildcards.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/support/DesktopSandbox.h"

namespace juntora::bench {
namespace {

using std::chrono::microseconds;

/// Keeps both cores busy while it lives.
class Burners {
public:
    Burners() {
        for (pid_t& process : m_processes) {
            process = fork();
            if (process == 0) {
                prctl(PR_SET_PDEATHSIG, SIGKILL);
                for (volatile unsigned long turn = 0;;) {
                    turn = turn + 1;
                }
            }
        }
    }
    ~Burners() {
        for (const pid_t process : m_processes) {
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
        }
    }
    Burners(const Burners&) = delete;
    Burners& operator=(const Burners&) = delete;

private:
    pid_t m_processes[2]{};
};

struct Round {
    Samples hub;
    Samples pingPong;
    Samples bus;
};

void measure(Samples& samples, int calls, const std::function<void()>& pause,
             const std::function<void()>& call) {
    for (int i = 0; i < calls; ++i) {
        pause();
        const auto start = Clock::now();
        call();
        samples.add(microsecondsSince(start));
    }
}

struct Peers {
    PingPong pingPong;
    Bus& bus;
    HWND self;
};

Round roundTrips(Peers& peers, int rounds, int calls, const std::function<void()>& pause) {
    Round round;
    for (int i = 0; i < rounds; ++i) {
        measure(round.hub, calls, pause, [&] { ipcIsAlive(peers.self); });
        measure(round.pingPong, calls, pause, [&] { peers.pingPong.call(); });
        measure(round.bus, calls, pause, [&] { peers.bus.call(); });
    }
    return round;
}

void report(const char* title, Round round, double pingPongGoal, double busGoal) {
    std::printf("%s\n", title);
    printRow("ipcIsAlive, median", round.hub.median(), "us");
    printRow("ipcIsAlive, 99th percentile", round.hub.p99(), "us");
    printRow("futex ping-pong, median", round.pingPong.median(), "us");
    printRow("futex ping-pong, 99th percentile", round.pingPong.p99(), "us");
    printRow("bus call, median", round.bus.median(), "us");
    printRow("bus call, 99th percentile", round.bus.p99(), "us");
    printRatio("of the ping-pong's median", round.hub.median() / round.pingPong.median(),
               pingPongGoal, true);
    if (busGoal > 0) {
        printRatio("times faster than the bus call", round.bus.median() / round.hub.median(),
                   busGoal, false);
    }
}

void benchRoundTrips(Peers& peers) {
    report("Back to back", roundTrips(peers, 10, 2000, [] {}), 0.08, 50);
    report("30 us of work between two calls",
           roundTrips(peers, 5, 500, [] { work(microseconds(30)); }), 0.65, 7);
    report("300 us of sleep between two calls",
           roundTrips(peers, 5, 300, [] { SleepMicroseconds(300); }), 1.15, 10);
    const Burners burners;
    report("Both cores kept busy by others", roundTrips(peers, 5, 300, [] {}), 1.3, 0);
}

double forwardRecords(Receiver& receiver, int count) {
    const int before = receiver.received();
    char text[901];
    std::memset(text, ' ', 900);
    text[900] = '\0';
    const auto start = Clock::now();
    for (int i = 0; i < count; ++i) {
        const int digits = std::snprintf(text, 20, "%d", before + i);
        text[digits] = ' ';
        while (ipcCommand(text, receiver.window()) == 0) {
        }
    }
    while (receiver.received() - before < count) {
    }
    return microsecondsSince(start) / count;
}

void benchRecords(Bus& bus) {
    Receiver receiver;
    constexpr int COUNT = 20'000;
    Samples hub;
    Samples daemon;
    Samples direct;
    for (int i = 0; i < 5; ++i) {
        hub.add(forwardRecords(receiver, COUNT));
        auto start = Clock::now();
        bus.oneWay(COUNT, false);
        daemon.add(microsecondsSince(start) / COUNT);
        start = Clock::now();
        bus.oneWay(COUNT, true);
        direct.add(microsecondsSince(start) / COUNT);
    }
    std::printf("One-way records of 900 characters, tool to tool, none lost or out of order\n");
    printRow("through the hub, each", hub.median(), "us");
    printRow("through the bus, each", daemon.median(), "us");
    printRow("over a direct bus connection, each", direct.median(), "us");
    printRatio("times the records of the bus", daemon.median() / hub.median(), 4, false);
    printRatio("times the records of a direct connection", direct.median() / hub.median(), 4,
               false);
}

void benchSignOn() {
    Samples on;
    Samples off;
    for (int i = 0; i < 500; ++i) {
        Rows rows;
        auto start = Clock::now();
        rows.grow(1);
        on.add(microsecondsSince(start));
        start = Clock::now();
        rows.clear();
        off.add(microsecondsSince(start));
    }
    std::printf("Coming and going, with a window made and unmade\n");
    printRow("sign-on, median", on.median(), "us");
    printRow("sign-off, median", off.median(), "us");
}

struct RequestCosts {
    Samples alive;
    Samples find;
    Samples name;
};

RequestCosts requestCosts(const Rows& rows, std::size_t count) {
    RequestCosts costs;
    for (std::size_t i = 0; i < 6000; ++i) {
        const std::size_t at = i * 7919 % count;
        const std::string name = Rows::name(at);
        const HWND window = rows.window(at);
        char buffer[64];
        int capacity = sizeof buffer;
        auto start = Clock::now();
        const bool alive = ipcIsAlive(window) == 1;
        costs.alive.add(microsecondsSince(start));
        start = Clock::now();
        const bool found = ipcFindApp(name.c_str()) == window;
        costs.find.add(microsecondsSince(start));
        start = Clock::now();
        const bool named = ipcAppName(window, buffer, &capacity) == 1;
        costs.name.add(microsecondsSince(start));
        if (!alive || !found || !named) {
            throw std::runtime_error("a row is missing");
        }
    }
    return costs;
}

struct RequestMedians {
    double alive;
    double find;
    double name;
};

RequestMedians printRequestCosts(const Rows& rows, std::size_t count) {
    RequestCosts costs = requestCosts(rows, count);
    const RequestMedians medians{costs.alive.median(), costs.find.median(), costs.name.median()};
    std::printf("  %6zu rows: is-alive %.3f, find %.3f, name %.3f\n", count, medians.alive,
                medians.find, medians.name);
    return medians;
}

void benchReaper() {
    const HWND monitor = FindWindowA(nullptr, "Application Activity");
    Samples reap;
    for (int i = 0; i < 50; ++i) {
        const auto start = Clock::now();
        SendMessageA(monitor, WM_TIMER, 1, 0);
        reap.add(microsecondsSince(start) / 1000);
    }
    printRatio("a pass of the reaper over 1,000 tools, ms", reap.median(), 5, true);
}

/// Few rows are measured before and after many, for the machine is not equally fast all the time.
void benchTableSizes() {
    std::printf("Requests by the number of rows (median, us)\n");
    Rows rows;
    rows.grow(10);
    const RequestMedians before = printRequestCosts(rows, 10);
    rows.grow(100);
    printRequestCosts(rows, 100);
    rows.grow(1000);
    printRequestCosts(rows, 1000);
    benchReaper();
    rows.grow(10'000);
    const RequestMedians many = printRequestCosts(rows, 10'000);
    rows.clear();
    rows.grow(10);
    const RequestMedians after = printRequestCosts(rows, 10);
    rows.clear();
    const auto printMany = [](const char* name, double most, double first, double last) {
        printRatio(name, 2 * most / (first + last), 1.5, true);
    };
    printMany("is-alive, 10,000 rows to 10", many.alive, before.alive, after.alive);
    printMany("find, 10,000 rows to 10", many.find, before.find, after.find);
    printMany("name, 10,000 rows to 10", many.name, before.name, after.name);
}

double privateMebibytes(pid_t process) {
    std::ifstream rollup("/proc/" + std::to_string(process) + "/smaps_rollup");
    double kibibytes = 0;
    for (std::string key; rollup >> key;) {
        if (key == "Private_Dirty:" || key == "Private_Clean:") {
            double value = 0;
            rollup >> value;
            kibibytes += value;
        }
    }
    return kibibytes / 1024;
}

void benchFootprint(pid_t hub) {
    Rows rows;
    rows.grow(100);
    std::printf("The hub with 100 tools, without a display\n");
    printRatio("private memory, MiB", privateMebibytes(hub), 8, true);
    rows.clear();
}

/// Before this process has come to a desktop: each start is measured by a child on one of its own.
void benchStart() {
    Samples first;
    Samples later;
    Samples alone;
    const auto start = [](const test::DesktopSandbox& sandbox, Samples& samples) {
        test::ChildProcess::Options options;
        options.environment = sandbox.environment();
        test::ChildProcess child(test::OwnProgram(), {"--start"}, options);
        samples.add(std::stod(child.readLine().value_or("0")) / 1000);
        child.wait();
    };
    for (int i = 0; i < 20; ++i) {
        const test::DesktopSandbox sandbox;
        const test::BusDaemon bus(sandbox.runtimeFolder());
        start(sandbox, first);
        start(sandbox, later);
        start(test::DesktopSandbox(), alone);
    }
    std::printf("From the start of the process to its first answer\n");
    printRatio("registered as it is, ms", later.median(), 20, true);
    printRow("at the user's first start", first.median(), "ms");
    printRow("the same, with a message bus to be started", alone.median(), "ms");
}

int runStart() {
    const HWND window = makeToolWindow();
    RegisterWindowMessageA(IPC_MESSAGE_NAME);
    const auto start = Clock::now();
    // So that it starts no Planchet, which would start another hub when this one is killed.
    const test::ChildProcess hub("juntora", {"-Embedding"});
    while (ipcFindHub() == 0) {
    }
    ipcObserve(window);
    char reply[2];
    for (;;) {
        int capacity = sizeof reply;
        // A hub that serves answers a sign-off with 1 even if it knows no such tool.
        if (ipcSend(IPC_SIGN_OFF, nullptr, 0, reply, &capacity) == 1) {
            break;
        }
    }
    std::printf("%f\n", microsecondsSince(start));
    std::fflush(stdout);
    return 0;
}

/// What can be measured alone, by the names on the command line.
using Sections = std::set<std::string>;
const Sections ALL_SECTIONS{"start",      "library",   "messages",  "round-trips",
                            "records",    "sign-on",   "rows",      "files",
                            "launch",     "footprint", "screen",    "registry",
                            "automation", "settings",  "wildcards", "registration"};

int run(const Sections& wanted) {
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const auto section = [&](const char* name, const std::function<void()>& measureIt) {
        if (wanted.contains(name)) {
            measureIt();
        }
    };
    section("start", benchStart);
    section("library", benchLibrary);
    section("messages", benchMessages);
    section("wildcards", benchWildcards);
    const test::DesktopSandbox sandbox;
    sandbox.enter();
    section("registry", benchRegistry);
    section("settings", benchSettings);
    section("registration", benchRegistration);
    Bus bus(sandbox.runtimeFolder());
    Peers peers{{}, bus, 0};
    Hub hub;
    const Link link("Bench");
    if (!link.isOn()) {
        throw std::runtime_error("the hub refused");
    }
    peers.self = ipcSelfId;
    section("round-trips", [&] { benchRoundTrips(peers); });
    section("records", [&] { benchRecords(bus); });
    section("sign-on", benchSignOn);
    section("footprint", [&] { benchFootprint(hub.pid()); });
    section("rows", benchTableSizes);
    section("files", benchFiles);
    section("launch", benchLaunch);
    section("automation", [&] { benchAutomation(bus); });
    section("screen", [&] { benchScreen(hub.pid(), sandbox.runtimeFolder()); });
    return 0;
}

int runSections(const Sections& named) {
    for (const std::string& name : named) {
        if (!ALL_SECTIONS.contains(name)) {
            std::fprintf(stderr, "usage: juntora_bench [SECTION...], each one of:");
            for (const std::string& section : ALL_SECTIONS) {
                std::fprintf(stderr, " %s", section.c_str());
            }
            std::fprintf(stderr, "\n");
            return 2;
        }
    }
    return run(named.empty() ? ALL_SECTIONS : named);
}

}  // namespace
}  // namespace juntora::bench

int main(int argc, char** argv) {
    const std::string role = argc > 1 ? argv[1] : "";
    try {
        if (role == "--receiver") {
            return juntora::bench::runReceiver();
        }
        return role == "--start" ? juntora::bench::runStart()
                                 : juntora::bench::runSections({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::fprintf(stderr, "juntora_bench: %s\n", error.what());
        return 1;
    }
}
