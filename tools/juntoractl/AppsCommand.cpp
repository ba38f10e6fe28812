// apps: the activity lines.
#include <algorithm>

#include "ipc/ipc.h"
#include "tools/juntoractl/ActivityText.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    bool json = false;
};

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

int printApps(const Options& options) {
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

int run(const Options& options) {
    return withHub([&] { return printApps(options); });
}

}  // namespace

void addAppsCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(app, "apps", "List the tools and the files that they hold",
                                   options, run, action);
    addJsonFlag(command, &options->json, "Print an array of objects");
}

}  // namespace juntora
