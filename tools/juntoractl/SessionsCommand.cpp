// sessions: the tools that the hub drives by automation objects.
#include <algorithm>
#include <string>
#include <vector>

#include "bridge/CComInterfaceWnd.h"
#include "ipc/ipc.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct StandBy {
    const char* caption;
    const char* session;
};

/// One of each session's windows.
constexpr StandBy STAND_BYS[] = {
    {"m_pcwndDummyVoltara", "Voltara"},
    {"m_pcwndDummyTunara", "Tunara"},
    {"m_pcwndDummyModelar", "Modelar"},
    {"m_pcwndDummyWavend", "Wavend"},
};

constexpr const char* STATES[] = {"none", "running", "connected", "subscribed"};

struct RunningSession {
    std::string name;
    std::string state;
    HWND client;  ///< 0 for nobody.
    std::string clientName;
};

std::string nameOf(HWND window) {
    char name[IPC_TEXT_LIMIT + 1] = "";
    int capacity = IPC_TEXT_LIMIT;
    return window != 0 && ipcAppName(window, name, &capacity) != 0 ? name : "";
}

std::vector<RunningSession> readSessions() {
    const UINT question = RegisterWindowMessageA(SESSION_MESSAGE);
    std::vector<RunningSession> sessions;
    for (const StandBy& standBy : STAND_BYS) {
        const HWND window = FindWindowA(STANDBY_WINDOW_CLASS, standBy.caption);
        const auto ask = [&](SessionQuestion what) {
            return window != 0 ? SendMessageA(window, question, what, 0) : 0;
        };
        const auto state = static_cast<std::size_t>(ask(SESSION_ASK_STATE));
        if (state != SESSION_NONE && state < std::size(STATES)) {
            const auto client = static_cast<HWND>(ask(SESSION_ASK_CLIENT));
            sessions.push_back({standBy.session, STATES[state], client, nameOf(client)});
        }
    }
    return sessions;
}

void printTable(const std::vector<RunningSession>& sessions) {
    printLine("SESSION  STATE       ID        TOOL");
    for (const RunningSession& session : sessions) {
        char line[64];
        std::snprintf(line, sizeof line, "%-7s  %-10s  %-8s  ", session.name.c_str(),
                      session.state.c_str(), windowText(session.client).c_str());
        printLine(line + session.clientName);
    }
}

int printSessions(const RequestOptions& options) {
    const std::vector<RunningSession> sessions = readSessions();
    if (!options.json) {
        printTable(sessions);
        return EXIT_CODE_DONE;
    }
    Json array = Json::array();
    for (const RunningSession& session : sessions) {
        Json object{{"session", session.name}, {"state", session.state}, {"id", nullptr}};
        if (session.client != 0) {
            object["id"] = windowText(session.client);
            object["name"] = session.clientName;
        }
        array.push_back(object);
    }
    printJson(array);
    return EXIT_CODE_DONE;
}

}  // namespace

void addSessionsCommand(CLI::App& app, Action* action) {
    addRequest(app, "sessions", "List the tools that the hub drives by objects, and for whom",
               "Print an array of objects", printSessions, action);
}

}  // namespace juntora
