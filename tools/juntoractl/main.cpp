// juntoractl: a tool of the suite for the command line, and a window into the hub.
#include <cstdio>
#include <exception>

#include "platform/kernel/process.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"

namespace juntora {
namespace {

constexpr char DESCRIPTION[] =
    "Looks into the hub of this desktop and talks with its tools.\n"
    "An ID is a tool's window, in hexadecimal as `apps` prints it.";

constexpr char FOOTER[] =
    "Examples:\n"
    "  juntoractl apps                      what runs, and which files it holds\n"
    "  juntoractl command 1000a \"open a\"    a command for the tool with the window 1000a\n"
    "  juntoractl watch \"Draftel;0\"         wait until that tool has gone\n"
    "  juntoractl lock status a.opj         who reads, writes or watches that file\n"
    "  juntoractl registry get HKCR\\.sch    what stands for files of that kind\n"
    "  echo 'find Draftel' | juntoractl tool Sample\n"
    "                                       sign on, ask, and leave again\n\n"
    "Exit codes: 0 done, 1 refused or nothing found, 2 wrong usage, 3 no hub.\n"
    "JUNTORA_DESKTOP names the desktop.";

int run(int argc, char** argv) {
    CLI::App app(DESCRIPTION, "juntoractl");
    app.footer(FOOTER);
    app.require_subcommand(1);
    Action action;
    addAppsCommand(app, &action);
    addSessionsCommand(app, &action);
    addQueryCommands(app, &action);
    addRequestCommands(app, &action);
    addLaunchCommand(app, &action);
    addLockCommands(app, &action);
    addWatchCommand(app, &action);
    addMonitorCommand(app, &action);
    addToolCommand(app, &action);
    addPathCommand(app, &action);
    addListCommand(app, &action);
    addScreenshotCommand(app, &action);
    addCheckCommand(app, &action);
    addRegistryCommands(app, &action);
    addConfigCommands(app, &action);
    addInstallCommands(app, &action);
    addLibraryCommands(app, &action);
    addRegisterCommand(app, &action);
    addAssociationsCommand(app, &action);
    addCleanCommand(app, &action);
    addMessageCommands(app, &action);
    addAnswersCommand(app, &action);
    addNameCommands(app, &action);
    addSwitchCommand(app, &action);
    addOpenCommand(app, &action);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_CODE_DONE : EXIT_CODE_USAGE;
    }
    return action();
}

}  // namespace
}  // namespace juntora

int main(int argc, char** argv) {
    juntora::SetProgramArguments(argc, argv);
    try {
        return juntora::run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "juntoractl: given up: %s\n", error.what());
        return juntora::EXIT_CODE_REFUSED;
    }
}
