// tool: signs on and stays, driven by lines on standard input.
#include <string>

#include "platform/desktop/message.h"
#include "platform/kernel/input.h"
#include "platform/kernel/signals.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/HubAccess.h"
#include "tools/juntoractl/LineBuffer.h"
#include "tools/juntoractl/ScriptCommands.h"
#include "tools/juntoractl/SignOn.h"

namespace juntora {
namespace {

constexpr std::size_t LONGEST_LINE = 1024 * 1024;
constexpr std::string_view BLANKS = " \t";

struct Options {
    std::string name;
    bool mustNotStart = false;
};

class ScriptedTool : public ToolWindow {
public:
    ScriptedTool() : ToolWindow(CONTROL_WINDOW_CLASS, CONTROL_NAME), m_lines(LONGEST_LINE) {}
    ~ScriptedTool() override { UnwatchStandardInput(); }

    void start() {
        print({{"event", "signed-on"}, {"id", windowText(ipcSelfId)}, {"name", name()}});
        if (!WatchStandardInput(
                [](const char* bytes, std::size_t count, void* self) {
                    static_cast<ScriptedTool*>(self)->onInput({bytes, count});
                },
                this)) {
            PostQuitMessage(EXIT_CODE_DONE);
        }
    }

private:
    int onRecord(int opcode, const IpcMessage& record) override {
        print({{"event", "record"},
               {"opcode", opcode},
               {"sender", windowText(record.sender)},
               {"text", record.text}});
        return 1;
    }

    void onInput(std::string_view bytes) {
        const auto take = [this](std::string_view line, bool isTooLong) {
            onLine(line, isTooLong);
        };
        if (!bytes.empty()) {
            m_lines.add(bytes, take);
        } else {
            m_lines.finish(take);
            quit();
        }
    }

    void onLine(std::string_view line, bool isTooLong) {
        const std::size_t start = line.find_first_not_of(BLANKS);
        if (m_hasQuit || (start == std::string_view::npos && !isTooLong)) {
            return;
        }
        if (isTooLong) {
            print({{"event", "error"}, {"text", "the line is longer than 1 MiB; it is left out"}});
        } else if (line.substr(start, line.find_last_not_of(BLANKS) + 1 - start) == "quit") {
            quit();
        } else {
            print(runScriptLine(line));
        }
    }

    void quit() {
        m_hasQuit = true;
        UnwatchStandardInput();
        PostQuitMessage(EXIT_CODE_DONE);
    }

    void print(const Json& event) {
        if (!printJson(event)) {
            quit();
        }
    }

    LineBuffer m_lines;
    bool m_hasQuit = false;
};

int run(const Options& options) {
    ScriptedTool tool;
    if (tool.handle() == 0 || (options.mustNotStart && !ipcFindHub())) {
        return complainOfNoHub();
    }
    QuitOnSignals();
    switch (tool.signOn(options.name.c_str(), false)) {
        case ToolWindow::SignOn::DONE:
            tool.start();
            return tool.run();
        case ToolWindow::SignOn::REFUSED:
            printJson({{"event", "refused"}});
            return EXIT_CODE_REFUSED;
        default:
            complain("no hub runs on this desktop, and none could be started");
            return EXIT_CODE_NO_HUB;
    }
}

}  // namespace

void addToolCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(
        app, "tool", "Sign on and stay, driven by lines on standard input", options, run, action);
    command->add_option("NAME", options->name, "The base name to sign on with")->required();
    command->add_flag("--no-start", options->mustNotStart, "Start no hub where none runs");
    command->footer(
        "Commands, one a line, each answered by one object a line:\n" + scriptCommands() +
        "  quit\n"
        "A word with blanks stands in double quotes, inside which two stand for one; a last TEXT\n"
        "without quotes runs to the end of the line. The end of input signs off as quit does.");
}

}  // namespace juntora
