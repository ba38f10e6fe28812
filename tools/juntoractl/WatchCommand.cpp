// watch: prints departures as they come.
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/kernel/signals.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/Departure.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/Output.h"
#include "tools/juntoractl/SignOn.h"
#include "tools/toolkit/ActivityReader.h"

namespace juntora {
namespace {

constexpr DWORD LOOK_EVERY = 1'000;

struct Options {
    std::vector<std::string> tools;
    bool json = false;
};

class Watcher : public ToolWindow {
public:
    explicit Watcher(bool json) : ToolWindow(CONTROL_WINDOW_CLASS, CONTROL_NAME), m_json(json) {}

    /// False when the hub knows no such tool.
    bool watch(const std::string& tool) {
        HWND id = ipcFindApp(tool.c_str());
        if (id == 0 && !parseWindow(tool, &id)) {
            return false;
        }
        char name[IPC_TEXT_LIMIT + 1] = "";
        int capacity = IPC_TEXT_LIMIT;
        if (!ipcAppName(id, name, &capacity)) {
            return false;
        }
        if (m_watched.emplace(id, name).second && !ipcWatchId(id)) {
            m_watched.erase(id);
            return false;
        }
        return true;
    }

    /// From here on nothing is missed.
    void start() {
        std::string names;
        for (const auto& [id, name] : m_watched) {
            names += (names.empty() ? "" : ", ") + name;
        }
        complain("watching " + names);
        m_activity.find(ipcHubWindow);
        startTimer(LOOK_EVERY);
    }

private:
    int onRecord(int opcode, const IpcMessage& record) override {
        if (const auto departure = parseDeparture(opcode, record)) {
            report(departure->id, departure->isOrderly ? "left in order" : "ended without a word",
                   departure->isOrderly);
        }
        return 1;
    }

    void onTimer() override {
        if (!hubIsThere()) {
            complain("the hub has gone");
            PostQuitMessage(EXIT_CODE_NO_HUB);
        } else if (m_activity.hasNews() || !m_missing.empty()) {
            reportMissing();
        }
    }

    /// A row can go without a notice, as that of a closed file does, and the interest with it. At
    /// the second look no notice can still be on its way.
    void reportMissing() {
        const std::map<HWND, std::string> watched = m_watched;
        for (const auto& [id, name] : watched) {
            if (ipcIsAlive(id) || !hubIsThere()) {
                m_missing.erase(id);
            } else if (!m_missing.insert(id).second) {
                report(id, "has gone", nullptr);
            }
        }
    }

    void report(HWND id, const char* how, const Json& isOrderly) {
        const auto found = m_watched.find(id);
        if (found == m_watched.end()) {
            return;
        }
        const std::string name = found->second;
        m_watched.erase(found);
        m_missing.erase(id);
        const bool isRead = m_json ? printJson({{"event", "departed"},
                                                {"orderly", isOrderly},
                                                {"id", windowText(id)},
                                                {"name", name}})
                                   : printLine(name + "  " + windowText(id) + "  " + how);
        if (!isRead || m_watched.empty()) {
            PostQuitMessage(EXIT_CODE_DONE);
        }
    }

    bool m_json;
    ActivityReader m_activity;
    std::map<HWND, std::string> m_watched;
    std::set<HWND> m_missing;
};

int run(const Options& options) {
    Watcher watcher(options.json);
    const int code = signOnForControl(watcher);
    if (code != EXIT_CODE_DONE) {
        return code;
    }
    for (const std::string& tool : options.tools) {
        if (!watcher.watch(tool)) {
            complain("no tool \"" + tool + "\" is signed on");
            return EXIT_CODE_REFUSED;
        }
    }
    watcher.start();
    return watcher.run();
}

}  // namespace

void addWatchCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(
        app, "watch", "Print each departure of the tools as it comes, until all have gone", options,
        run, action);
    command
        ->add_option("NAME_OR_ID", options->tools,
                     "Tools by name or window; what is both is taken for a name")
        ->required();
    addJsonFlag(command, &options->json, "Print an object for each departure");
}

}  // namespace juntora
