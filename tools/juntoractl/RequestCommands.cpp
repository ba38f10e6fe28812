// show, close-all, command, status: requests to the hub and records to tools.
#include <string>

#include "ipc/ipc.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubWords.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

int done(const RequestOptions& options, int result) {
    if (options.json) {
        printJson({{"result", result}});
    }
    return EXIT_CODE_DONE;
}

/// A record for a tool, which the hub carries on.
int carried(const RequestOptions& options, int result) {
    done(options, result);
    if (result != 0) {
        return EXIT_CODE_DONE;
    }
    if (!options.json) {
        complain("the hub did not carry the record on: no tool has the window " + options.subject +
                 ", or it takes no more records");
    }
    return EXIT_CODE_REFUSED;
}

int show(const RequestOptions& options) { return done(options, ipcCommand(HUB_WORD_SHOW, 0)); }

int closeAll(const RequestOptions& options) {
    return done(options, ipcCommand(HUB_WORD_CLOSE_ALL, 0));
}

int command(const RequestOptions& options) {
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

int status(const RequestOptions& options) {
    return carried(options, ipcStatus(options.window(), options.text.c_str(), options.code));
}

constexpr char JSON_FLAG[] = "Print the result as an object";

}  // namespace

void addRequestCommands(CLI::App& app, Action* action) {
    addRequest(app, "show", "Show the hub's window", JSON_FLAG, show, action);
    addRequest(app, "close-all", "Close all tools", JSON_FLAG, closeAll, action);

    RequestCommand added =
        addRequest(app, "command", "Send a tool a command", JSON_FLAG, command, action);
    addWindow(added.command, "ID", &added.options->subject,
              "The tool's window, 0 for the hub itself");
    added.command->add_option("TEXT", added.options->text, "The command")->required();

    added = addRequest(app, "status", "Send a tool a status", JSON_FLAG, status, action);
    addWindow(added.command, "ID", &added.options->subject, "The tool's window");
    added.command->add_option("TEXT", added.options->text, "The text of the status")->required();
    added.command->add_option("CODE", added.options->code, "Its number")->required();
}

}  // namespace juntora
