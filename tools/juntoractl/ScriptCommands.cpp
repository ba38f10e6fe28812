#include "tools/juntoractl/ScriptCommands.h"

#include <limits>
#include <vector>

#include "ipc/ipc.h"
#include "tools/juntoractl/Arguments.h"
#include "tools/juntoractl/ScriptHandlers.h"

namespace juntora {
namespace {

constexpr int LOWEST = std::numeric_limits<int>::min();
constexpr int HIGHEST = std::numeric_limits<int>::max();
constexpr int LAST_OPCODE = 65'535;
/// More than a slot has never comes back.
constexpr int LARGEST_CAPACITY = 65'536;

/// A handler reads its arguments, and if they are complete does the work and puts "result", and
/// what else there is, into the answer.
using Handler = void (*)(Arguments& arguments, Json& answer);

void find(Arguments& arguments, Json& answer) {
    const std::string name = arguments.word("NAME");
    if (arguments.areComplete()) {
        const HWND window = ipcFindApp(name.c_str());
        answer["result"] = window;
        if (window != 0) {
            answer["id"] = windowText(window);
        }
    }
}

void name(Arguments& arguments, Json& answer) {
    const HWND window = arguments.window("ID");
    if (arguments.areComplete()) {
        char reply[IPC_TEXT_LIMIT + 1] = "";
        int capacity = IPC_TEXT_LIMIT;
        const int result = ipcAppName(window, reply, &capacity);
        answer["result"] = result;
        if (result != 0) {
            answer["reply"] = reply;
        }
    }
}

void alive(Arguments& arguments, Json& answer) {
    const HWND window = arguments.window("ID");
    if (arguments.areComplete()) {
        answer["result"] = ipcIsAlive(window);
    }
}

void watch(Arguments& arguments, Json& answer) {
    const std::string name = arguments.word("NAME");
    if (arguments.areComplete()) {
        answer["result"] = ipcWatchName(name.c_str());
    }
}

void watchId(Arguments& arguments, Json& answer) {
    const HWND window = arguments.window("ID");
    if (arguments.areComplete()) {
        answer["result"] = ipcWatchId(window);
    }
}

void command(Arguments& arguments, Json& answer) {
    const HWND target = arguments.window("ID");
    const std::string text = arguments.text("TEXT");
    if (arguments.areComplete()) {
        answer["result"] = ipcCommand(text.c_str(), target);
    }
}

void status(Arguments& arguments, Json& answer) {
    const HWND target = arguments.window("ID");
    const std::string text = arguments.word("TEXT");
    const int code = arguments.number("CODE", LOWEST, HIGHEST);
    if (arguments.areComplete()) {
        answer["result"] = ipcStatus(target, text.c_str(), code);
    }
}

void send(Arguments& arguments, Json& answer) {
    const int opcode = arguments.number("OPCODE", 0, LAST_OPCODE);
    const HWND target = arguments.window("ID");
    int capacity = arguments.number("CAPACITY", 1, LARGEST_CAPACITY);
    const auto text = arguments.optionalText();
    if (arguments.areComplete()) {
        std::vector<char> reply(static_cast<std::size_t>(capacity) + 1);
        answer["result"] =
            ipcSend(opcode, text ? text->c_str() : nullptr, target, reply.data(), &capacity);
        answer["reply"] = reply.data();
    }
}

void post(Arguments& arguments, Json& answer) {
    const int opcode = arguments.number("OPCODE", 0, LAST_OPCODE);
    const HWND target = arguments.window("ID");
    const auto text = arguments.optionalText();
    if (arguments.areComplete()) {
        answer["result"] = ipcPost(opcode, text ? text->c_str() : nullptr, target);
    }
}

struct Command {
    const char* word;
    const char* arguments;
    Handler run;
};

constexpr Command COMMANDS[] = {
    {"find", "NAME", find},
    {"name", "ID", name},
    {"alive", "ID", alive},
    {"watch", "NAME", watch},
    {"watch-id", "ID", watchId},
    {"command", "ID TEXT", command},
    {"status", "ID TEXT CODE", status},
    {"send", "OPCODE ID CAPACITY [TEXT]", send},
    {"post", "OPCODE ID [TEXT]", post},
    {"open", "FILE ACCESS", scriptOpen},
    {"query", "FILE ACCESS", scriptQuery},
    {"close", "FILE ACCESS", scriptClose},
    {"set-flags", "FILE BITS", scriptSetFlags},
    {"clear-flags", "FILE BITS", scriptClearFlags},
    {"find-flags", "FILE FLAGS [ID]", scriptFindFlags},
    {"launch", "PROGRAM [ARGUMENT...]", scriptLaunch},
    {"launch-wait", "PROGRAM [ARGUMENT...]", scriptLaunchWait},
    {"setenv", "NAME=VALUE", scriptSetEnv},
};

Json error(const std::string& text) { return {{"event", "error"}, {"text", text}}; }

std::string knownWords() {
    std::string words;
    for (const Command& known : COMMANDS) {
        words += std::string(known.word) + ", ";
    }
    return words + "quit";
}

}  // namespace

std::string scriptCommands() {
    std::string lines;
    for (const Command& command : COMMANDS) {
        lines += std::string("  ") + command.word + " " + command.arguments + "\n";
    }
    return lines;
}

Json runScriptLine(std::string_view line) {
    if (line.find('\0') != std::string_view::npos) {
        return error("the line has a NUL byte in it, which no text of a record can hold");
    }
    Arguments arguments(line);
    const std::string word = arguments.word("the command");
    for (const Command& known : COMMANDS) {
        if (word == known.word) {
            Json answer{{"event", "result"}, {"command", word}};
            known.run(arguments, answer);
            return arguments.problem().empty()
                       ? answer
                       : error(arguments.problem() + "; write: " + word + " " + known.arguments);
        }
    }
    return error("unknown command \"" + word + "\"; there are: " + knownWords());
}

}  // namespace juntora
