// show, close-all, command, status: requests to the hub and records to tools.
#include <string>

#include "ipc/ipc.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/HubWords.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::string id;
    std::string text;
    int code = 0;
    bool json = false;

    HWND window() const {
        HWND window = 0;
        parseWindow(id, &window);
        return window;
    }
};

int done(const Options& options, int result) {
    if (options.json) {
        printJson({{"result", result}});
    }
    return EXIT_CODE_DONE;
}

/// A record for a tool, which the hub carries on.
int carried(const Options& options, int result) {
    done(options, result);
    if (result != 0) {
        return EXIT_CODE_DONE;
    }
    if (!options.json) {
        complain("the hub did not carry the record on: no tool has the window " + options.id +
                 ", or it takes no more records");
    }
    return EXIT_CODE_REFUSED;
}

int show(const Options& options) { return done(options, ipcCommand(HUB_WORD_SHOW, 0)); }

int closeAll(const Options& options) { return done(options, ipcCommand(HUB_WORD_CLOSE_ALL, 0)); }

int command(const Options& options) {
    const int result = ipcCommand(options.text.c_str(), options.window());
    if (options.window() != 0) {
        return carried(options, result);
    }
    // The hub's own answer to a word: 0 may be as good as any.
    if (!options.json) {
        printLine(std::to_string(result));
    }
    return done(options, result);
}

int status(const Options& options) {
    return carried(options, ipcStatus(options.window(), options.text.c_str(), options.code));
}

template <int (*Request)(const Options&)>
int run(const Options& options) {
    return withHub([&] { return Request(options); });
}

std::shared_ptr<Options> addRequest(CLI::App& app, const char* word, const char* description,
                                    int (*request)(const Options&), Action* action,
                                    CLI::App** added) {
    auto options = std::make_shared<Options>();
    *added = addCommand(app, word, description, options, request, action);
    addJsonFlag(*added, &options->json, "Print the result as an object");
    return options;
}

}  // namespace

void addRequestCommands(CLI::App& app, Action* action) {
    CLI::App* added = nullptr;
    addRequest(app, "show", "Show the hub's window", run<show>, action, &added);
    addRequest(app, "close-all", "Close all tools", run<closeAll>, action, &added);

    auto options =
        addRequest(app, "command", "Send a tool a command", run<command>, action, &added);
    addWindow(added, "ID", &options->id, "The tool's window, 0 for the hub itself");
    added->add_option("TEXT", options->text, "The command")->required();

    options = addRequest(app, "status", "Send a tool a status", run<status>, action, &added);
    addWindow(added, "ID", &options->id, "The tool's window");
    added->add_option("TEXT", options->text, "The text of the status")->required();
    added->add_option("CODE", options->code, "Its number")->required();
}

}  // namespace juntora
