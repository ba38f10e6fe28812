// find, name, alive, running: questions that change nothing.
#include <string>

#include "ipc/ipc.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubWords.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

/// Prints what was found, or complains that nothing was.
int answer(const RequestOptions& options, const Json& object, const std::string& text,
           const std::string& complaint) {
    if (options.json) {
        printJson(object);
    } else if (complaint.empty()) {
        printLine(text);
    } else {
        complain(complaint);
    }
    return complaint.empty() ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

int find(const RequestOptions& options) {
    const HWND window = ipcFindApp(options.subject.c_str());
    const std::string text = windowText(window);
    Json object{{"name", options.subject}, {"id", nullptr}};
    if (window != 0) {
        object["id"] = text;
    }
    return answer(options, object, text,
                  window != 0 ? "" : "no tool \"" + options.subject + "\" is signed on");
}

int name(const RequestOptions& options) {
    char buffer[IPC_TEXT_LIMIT + 1] = "";
    int capacity = IPC_TEXT_LIMIT;
    const bool isKnown = ipcAppName(options.window(), buffer, &capacity) != 0;
    Json object{{"id", windowText(options.window())}, {"name", nullptr}};
    if (isKnown) {
        object["name"] = buffer;
    }
    return answer(options, object, buffer,
                  isKnown ? "" : "no tool has the window " + options.subject);
}

int alive(const RequestOptions& options) {
    const bool isAlive = ipcIsAlive(options.window()) != 0;
    return answer(options, {{"id", windowText(options.window())}, {"alive", isAlive}}, "alive",
                  isAlive ? "" : "no tool has the window " + options.subject);
}

int running(const RequestOptions& options) {
    const int rows = ipcCommand(HUB_WORD_ANY_APPS, 0);
    return answer(options, {{"rows", rows}}, std::to_string(rows), "");
}

constexpr char JSON_FLAG[] = "Print an object";

}  // namespace

void addQueryCommands(CLI::App& app, Action* action) {
    RequestCommand added =
        addRequest(app, "find", "Print the ID of a tool", JSON_FLAG, find, action);
    added.command
        ->add_option("NAME", added.options->subject,
                     "A unique name such as \"Draftel;0\", or a base name for its newest instance")
        ->required();

    added = addRequest(app, "name", "Print the unique name of a tool, or see the commands below",
                       JSON_FLAG, name, action);
    addWindow(added.command, "ID", &added.options->subject, "The tool's window");

    added = addRequest(app, "alive", "Tell whether a tool is signed on", JSON_FLAG, alive, action);
    addWindow(added.command, "ID", &added.options->subject, "The tool's window");

    addRequest(app, "running", "Print the number of rows in the hub's table", JSON_FLAG, running,
               action);
}

}  // namespace juntora
