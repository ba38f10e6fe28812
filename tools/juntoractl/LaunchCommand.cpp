// launch: has the hub start a program, in this one's folder.
#include <string>
#include <vector>

#include "ipc/ipc.h"
#include "platform/files/paths.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/LaunchText.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::vector<std::string> words;
    bool mustWait = false;
    bool isMinimised = false;
    bool json = false;
};

int launch(const Options& options) {
    char folder[IPC_TEXT_LIMIT];
    if (CurrentDirectory(folder, sizeof folder) == nullptr) {
        complain("the current folder, in which the program would start, is gone or too far away");
        return EXIT_CODE_REFUSED;
    }
    const std::string program = quotedProgram(options.words.front());
    const std::string arguments = quotedArguments({options.words.begin() + 1, options.words.end()});
    const int show = options.isMinimised ? SHOW_MINIMISED : SHOW_NORMALLY;
    const int result =
        (options.mustWait ? ipcLaunchWait : ipcLaunch)(program.c_str(), arguments.c_str(), 0, show);
    if (options.json) {
        Json object{{"result", result}};
        if (result != 0) {
            object["reason"] = launchFailure(result);
        }
        printJson(object);
    } else if (result != 0) {
        complain("the hub could not start " + program + ": " + launchFailure(result));
    }
    return result == 0 ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

int run(const Options& options) {
    return withHub([&] { return launch(options); });
}

}  // namespace

void addLaunchCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(
        app, "launch", "Have the hub start a program, in the current folder", options, run, action);
    command->add_flag("--wait", options->mustWait,
                      "Wait until it is ready for input, at most 30 s");
    command->add_flag("--minimised", options->isMinimised, "Start it minimised");
    addJsonFlag(command, &options->json, "Print the result as an object");
    command->add_option("PROGRAM", options->words, "The program, and its arguments")->required();
    command->positionals_at_end();
}

}  // namespace juntora
