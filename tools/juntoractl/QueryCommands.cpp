// find, name, alive, running: questions that change nothing.
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
    std::string subject;
    bool json = false;

    HWND window() const {
        HWND window = 0;
        parseWindow(subject, &window);
        return window;
    }
};

/// Prints what was found, or complains that nothing was.
int answer(const Options& options, const Json& object, const std::string& text,
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

int find(const Options& options) {
    const HWND window = ipcFindApp(options.subject.c_str());
    const std::string text = windowText(window);
    Json object{{"name", options.subject}, {"id", nullptr}};
    if (window != 0) {
        object["id"] = text;
    }
    return answer(options, object, text,
                  window != 0 ? "" : "no tool \"" + options.subject + "\" is signed on");
}

int name(const Options& options) {
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

int alive(const Options& options) {
    const bool isAlive = ipcIsAlive(options.window()) != 0;
    return answer(options, {{"id", windowText(options.window())}, {"alive", isAlive}}, "alive",
                  isAlive ? "" : "no tool has the window " + options.subject);
}

int running(const Options& options) {
    const int rows = ipcCommand(HUB_WORD_ANY_APPS, 0);
    return answer(options, {{"rows", rows}}, std::to_string(rows), "");
}

template <int (*Query)(const Options&)>
int run(const Options& options) {
    return withHub([&] { return Query(options); });
}

std::shared_ptr<Options> addQuery(CLI::App& app, const char* word, const char* description,
                                  int (*query)(const Options&), Action* action,
                                  CLI::App** command) {
    auto options = std::make_shared<Options>();
    *command = addCommand(app, word, description, options, query, action);
    addJsonFlag(*command, &options->json, "Print an object");
    return options;
}

}  // namespace

void addQueryCommands(CLI::App& app, Action* action) {
    CLI::App* command = nullptr;
    auto options = addQuery(app, "find", "Print the ID of a tool", run<find>, action, &command);
    command
        ->add_option("NAME", options->subject,
                     "A unique name such as \"Draftel;0\", or a base name for its newest instance")
        ->required();

    options = addQuery(app, "name", "Print the unique name of a tool", run<name>, action, &command);
    addWindow(command, "ID", &options->subject, "The tool's window");

    options =
        addQuery(app, "alive", "Tell whether a tool is signed on", run<alive>, action, &command);
    addWindow(command, "ID", &options->subject, "The tool's window");

    addQuery(app, "running", "Print the number of rows in the hub's table", run<running>, action,
             &command);
}

}  // namespace juntora
