// apps: the activity lines.
#include <algorithm>

#include "ipc/ipc.h"
#include "tools/juntoractl/ActivityText.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

void printTable(const std::vector<ActivityLine>& lines) {
    std::size_t nameWidth = 4;
    std::size_t idWidth = 2;
    for (const ActivityLine& line : lines) {
        nameWidth = std::max(nameWidth, line.name.size());
        idWidth = std::max(idWidth, windowText(line.id).size());
    }
    ActivityColumns columns(nameWidth, idWidth);
    printLine(columns.heading());
    for (const ActivityLine& line : lines) {
        printLine(columns.row(line));
    }
}

int printApps(const RequestOptions& options) {
    ActivityReader reader;
    if (!reader.find(ipcHubWindow)) {
        complain("the hub shows no activity lines");
        return EXIT_CODE_REFUSED;
    }
    const std::vector<ActivityLine> lines = reader.read();
    if (!options.json) {
        printTable(lines);
        return EXIT_CODE_DONE;
    }
    Json array = Json::array();
    for (const ActivityLine& line : lines) {
        array.push_back(activityJson(line));
    }
    printJson(array);
    return EXIT_CODE_DONE;
}

}  // namespace

void addAppsCommand(CLI::App& app, Action* action) {
    addRequest(app, "apps", "List the tools and the files that they hold",
               "Print an array of objects", printApps, action);
}

}  // namespace juntora
