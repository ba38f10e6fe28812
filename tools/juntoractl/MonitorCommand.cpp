// monitor: activity as it happens.
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "platform/desktop/message.h"
#include "tools/juntoractl/ActivityText.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/Departure.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/SignOn.h"
#include "tools/juntoractl/Timestamp.h"
#include "tools/toolkit/ActivityChanges.h"

namespace juntora {
namespace {

constexpr DWORD LOOK_EVERY = 200;
constexpr std::size_t NAME_WIDTH = 16;
constexpr std::size_t ID_WIDTH = 8;
/// A tool's line goes just before the notice of its departure is sent.
constexpr int LOOKS_FOR_NOTICE = 3;

struct Options {
    bool json = false;
};

class Monitor : public ToolWindow {
public:
    explicit Monitor(bool json)
        : ToolWindow(CONTROL_WINDOW_CLASS, CONTROL_NAME),
          m_json(json),
          m_columns(NAME_WIDTH, ID_WIDTH) {}

    bool start() {
        if (!m_activity.find(ipcHubWindow)) {
            complain("the hub shows no activity lines");
            return false;
        }
        if (!m_json) {
            print("TIME          EVENT    " + m_columns.heading());
        }
        look("present");
        startTimer(LOOK_EVERY);
        return true;
    }

private:
    struct Gone {
        ActivityLine line;
        int looks;
    };

    int onRecord(int opcode, const IpcMessage& record) override {
        if (const auto departure = parseDeparture(opcode, record)) {
            m_notices[departure->id] = departure->isOrderly;
            reportGone();
        }
        return 1;
    }

    void onTimer() override {
        if (!hubIsThere()) {
            complain("the hub has gone");
            PostQuitMessage(EXIT_CODE_NO_HUB);
            return;
        }
        look("came");
        reportGone();
    }

    void look(const char* onCame) {
        if (!m_activity.hasNews()) {
            return;
        }
        std::vector<ActivityLine> now = m_activity.read();
        std::erase_if(now, [&](const ActivityLine& line) { return line.id == handle(); });
        const std::vector<ActivityLine> before = std::exchange(m_lines, now);
        for (const ActivityChange& change : activityChanges(before, now)) {
            report(change, onCame);
        }
    }

    void report(const ActivityChange& change, const char* onCame) {
        switch (change.kind) {
            case ActivityChange::Kind::CAME:
                if (m_watched.insert(change.line.id).second) {
                    ipcWatchId(change.line.id);
                }
                print(onCame, change.line, "", nullptr);
                break;
            case ActivityChange::Kind::CHANGED:
                print("changed", change.line, "", nullptr);
                break;
            case ActivityChange::Kind::WENT:
                if (change.isLastOfTool) {
                    m_gone.push_back({change.line, 0});
                } else {
                    // The interest may have gone with the row.
                    ipcWatchId(change.line.id);
                    print("went", change.line, "let go of", nullptr);
                }
                break;
        }
    }

    /// Tools that have gone are printed with what the notice says, or without it where none comes.
    void reportGone() {
        std::vector<Gone> waiting;
        for (Gone& gone : std::exchange(m_gone, {})) {
            const auto notice = m_notices.find(gone.line.id);
            if (notice != m_notices.end()) {
                print("went", gone.line, notice->second ? "in order" : "not in order",
                      notice->second);
            } else if (++gone.looks >= LOOKS_FOR_NOTICE) {
                print("went", gone.line, "", nullptr);
            } else {
                waiting.push_back(gone);
                continue;
            }
            m_watched.erase(gone.line.id);
        }
        std::erase_if(m_notices, [&](const auto& notice) {
            return std::none_of(m_lines.begin(), m_lines.end(),
                                [&](const ActivityLine& line) { return line.id == notice.first; });
        });
        m_gone.insert(m_gone.end(), waiting.begin(), waiting.end());
    }

    void print(const char* event, const ActivityLine& line, const std::string& how,
               const Json& isOrderly) {
        const Timestamp now;
        if (!m_json) {
            std::string text = std::string(event) + std::string(9 - std::string(event).size(), ' ');
            text = now.clock() + "  " + text + m_columns.row(line);
            print(how.empty() ? text : text + "  " + how);
            return;
        }
        Json object{{"time", now.iso()}, {"event", event}};
        object.update(activityJson(line));
        if (std::string(event) == "went") {
            object["orderly"] = isOrderly;
        }
        end(printJson(object));
    }

    void print(const std::string& line) { end(printLine(line)); }

    static void end(bool isRead) {
        if (!isRead) {
            PostQuitMessage(EXIT_CODE_DONE);
        }
    }

    bool m_json;
    ActivityColumns m_columns;
    ActivityReader m_activity;
    std::vector<ActivityLine> m_lines;
    std::set<HWND> m_watched;
    std::map<HWND, bool> m_notices;
    std::vector<Gone> m_gone;
};

int run(const Options& options) {
    Monitor monitor(options.json);
    const int code = signOnForControl(monitor);
    if (code != EXIT_CODE_DONE) {
        return code;
    }
    return monitor.start() ? monitor.run() : EXIT_CODE_REFUSED;
}

}  // namespace

void addMonitorCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "monitor", "Print what tools come, change and go, until interrupted",
                   options, run, action);
    addJsonFlag(command, &options->json, "Print an object for each event");
}

}  // namespace juntora
