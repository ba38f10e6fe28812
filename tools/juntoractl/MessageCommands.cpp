// message: catalogued messages as text, box, dialog or help page, and what is in the catalogues. No
// hub takes part.
#include <charconv>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "framework/CWinApp.h"
#include "messages/NvMessageManager.h"
#include "messages/catalogueFiles.h"
#include "messages/messageBox.h"
#include "messages/messageHelp.h"
#include "messages/messageText.h"
#include "messages/tvErrorManager.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::string module;
    std::string number;
    std::vector<std::string> parameters;
    unsigned style = 0;
    bool json = false;
};

template <class Number>
std::optional<Number> parse(const std::string& text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && behind == end ? std::optional(number) : std::nullopt;
}

template <class Number>
bool add(NvParamList* list, const std::string& text) {
    const auto number = parse<Number>(text);
    if (number) {
        list->addParameterToList(*number);
    }
    return number.has_value();
}

/// Adds a parameter of the form "i:5". False where it has none of the forms.
bool addParameter(NvParamList* list, const std::string& parameter) {
    if (parameter.size() < 2 || parameter[1] != ':') {
        return false;
    }
    const std::string value = parameter.substr(2);
    switch (parameter[0]) {
        case 'c':
            list->addParameterToList(value.empty() ? '\0' : value[0]);
            return value.size() == 1;
        case 'i':
            return add<int>(list, value);
        case 'l':
            return add<long>(list, value);
        case 'k':
            return add<unsigned long>(list, value);
        case 'd':
            return add<double>(list, value);
        case 's':
            list->addParameterToList(value.c_str());
            return true;
        default:
            return false;
    }
}

/// Enters the message that was asked for into a status. Returns an exit code.
int enter(const Options& options, unsigned long* number, NvStatus* status) {
    const auto given = parse<std::uint32_t>(options.number);
    if (!given) {
        complain("\"" + options.number + "\" is no number from 0 to 4294967295");
        return EXIT_CODE_USAGE;
    }
    *number = *given;
    NvParamList list;
    for (const std::string& parameter : options.parameters) {
        if (!addParameter(&list, parameter)) {
            complain("\"" + parameter +
                     "\" is no parameter: one letter for the type (c, i, l, k, d, s), a colon, and "
                     "a value of that type");
            return EXIT_CODE_USAGE;
        }
    }
    tvErrorManager::getInstance()->loadModuleCatalogs(options.module.c_str());
    const nvm_error_code entered =
        status->addMessage(options.module.c_str(), *number, nullptr, list.getParameterList());
    if (entered == NVM_NO_SUCH_MESSAGE) {
        complain("no catalogue has the message " + options.module + "-" + options.number);
        return EXIT_CODE_REFUSED;
    }
    if (entered == NVM_WRONG_PARAMETERS) {
        complain("the message takes another number of parameters than " +
                 std::to_string(options.parameters.size()) + "; see \"juntoractl message list " +
                 options.module + " --json\"");
        return EXIT_CODE_USAGE;
    }
    return EXIT_CODE_DONE;
}

void printLines(std::string_view text) {
    for (std::size_t end = 0; end != std::string_view::npos;) {
        end = text.find('\n');
        printLine(std::string(text.substr(0, end)));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
}

int printMessage(const Options& options, const char* name,
                 int (*get)(std::string* out, NvStatus* status)) {
    NvStatus status(false);
    unsigned long number = 0;
    if (const int code = enter(options, &number, &status)) {
        return code;
    }
    std::string text;
    get(&text, &status);
    if (options.json) {
        printJson({{"module", options.module}, {"number", number}, {name, text}});
    } else {
        printLines(text);
    }
    return EXIT_CODE_DONE;
}

int printText(const Options& options) { return printMessage(options, "text", getStatusText); }
int printBody(const Options& options) { return printMessage(options, "body", getStatusBody); }

int openHelp(const Options& options) {
    if (options.json) {
        return printMessage(options, "help", getStatusHelp);
    }
    NvStatus status(false);
    unsigned long number = 0;
    if (const int code = enter(options, &number, &status)) {
        return code;
    }
    if (showMessageHelp(options.module.c_str(), number) != 0) {
        complain("the message has no help page");
        return EXIT_CODE_REFUSED;
    }
    return EXIT_CODE_DONE;
}

int printButton(const Options& options, int button) {
    if (options.json) {
        printJson({{"button", button}});
    } else {
        printLine(std::to_string(button));
    }
    return EXIT_CODE_DONE;
}

int showBox(const Options& options) {
    NvStatus status(false);
    unsigned long number = 0;
    const int code = enter(options, &number, &status);
    return code ? code : printButton(options, showStatusBox(&status, 0, 0));
}

/// Answers are kept with an application's settings; here it is juntoractl.
class Application : public CWinApp {
public:
    bool InitInstance() override { return false; }
};

int ask(const Options& options) {
    const Application application;
    NvStatus status(false);
    unsigned long number = 0;
    if (const int code = enter(options, &number, &status)) {
        return code;
    }
    return printButton(
        options, showStatusDialog(&status, options.module.c_str(), number, options.style, 0, 0, 1));
}

std::set<std::string> modulesOf(const Options& options) {
    std::set<std::string> modules;
    if (!options.module.empty()) {
        modules.insert(options.module);
    } else {
        readModuleTable(
            [&modules](std::string_view module, std::string_view) { modules.emplace(module); });
    }
    return modules;
}

void printListed(const Options& options, const std::string& module,
                 const CataloguedMessage& message) {
    if (options.json) {
        printJson({{"module", module},
                   {"number", message.number},
                   {"kind", kindWord(message.type)},
                   {"parameters", message.parameters},
                   {"text", message.text},
                   {"help", !message.help.empty()}});
    } else {
        printLine(module + "-" + std::to_string(message.number) + "  " + std::string(message.text));
    }
}

int listMessages(const Options& options) {
    tvErrorManager* manager = tvErrorManager::getInstance();
    bool hasAny = false;
    for (const std::string& module : modulesOf(options)) {
        manager->loadModuleCatalogs(module.c_str());
        const NvMessageModule* loaded =
            NvMessageManager::getInstance()->loadModule(module.c_str(), nullptr);
        for (const CataloguedMessage* message : loaded->messages()) {
            printListed(options, module, *message);
            hasAny = true;
        }
    }
    if (!hasAny) {
        complain(options.module.empty() ? "there are no catalogues"
                                        : "no catalogue has messages of " + options.module);
    }
    return hasAny ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

using Run = int (*)(const Options& options);

CLI::App* addMessageCommand(CLI::App& group, const char* name, const char* description, Run run,
                            const std::shared_ptr<Options>& options, Action* action) {
    CLI::App* command = addCommand(group, name, description, options, run, action);
    command->add_option("MODULE", options->module, "The message's module")->required();
    command->add_option("NUMBER", options->number, "Its number")->required();
    command->add_option("--param", options->parameters,
                        "A parameter, in order: i:5, l:5, k:5, d:0.5, c:x or s:text");
    addJsonFlag(command, &options->json, "As a JSON object");
    return command;
}

}  // namespace

void addMessageCommands(CLI::App& app, Action* action) {
    CLI::App* group =
        app.add_subcommand("message", "Show catalogued messages, by module and number");
    group->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    addMessageCommand(*group, "text", "Print the text", printText, options, action);
    addMessageCommand(*group, "body", "Print the text without kind and number", printBody, options,
                      action);
    addMessageCommand(*group, "help", "Open the help page in the viewer", openHelp, options,
                      action);
    addMessageCommand(*group, "box", "Show it in a box and print the button", showBox, options,
                      action);
    addMessageCommand(*group, "dialog",
                      "Ask in the box that can be switched off, and print the button", ask, options,
                      action)
        ->add_option("--style", options->style, "The buttons, 0 to 6: those of MB_OK and on")
        ->check(CLI::Range(0, 6));
    CLI::App* all =
        addCommand(*group, "list", "List what the catalogues have", options, listMessages, action);
    all->add_option("MODULE", options->module, "Of this module alone");
    addJsonFlag(all, &options->json, "As JSON objects, one a line");
}

}  // namespace juntora
