// name: names in a series, their order, and patterns of them. No hub takes part.
#include <memory>
#include <string>
#include <vector>

#include "setup/nameOrder.h"
#include "setup/nameSteps.h"
#include "setup/wildcards.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::string first;
    std::string second;
};

int printStepped(const std::string& name, int (*step)(char* name, int size), const char* refusal) {
    std::vector<char> buffer(name.begin(), name.end());
    buffer.resize(name.size() + 2);  // No step adds more than one character.
    if (step(buffer.data(), static_cast<int>(buffer.size())) != 0 || name == buffer.data() ||
        buffer.front() == '\0') {
        complain("\"" + name + "\" " + refusal);
        return EXIT_CODE_REFUSED;
    }
    printLine(buffer.data());
    return EXIT_CODE_DONE;
}

int next(const Options& options) {
    return printStepped(options.first, IncrementName,
                        "has no next name: it must end in a letter from A to Z, in a digit, or in "
                        "a number in brackets");
}

int previous(const Options& options) {
    return printStepped(options.first, DecrementName,
                        "has no previous name: it must end in a letter from A to Z, in a digit, or "
                        "in a number in brackets, and not be the first of its series");
}

int compare(const Options& options) {
    printLine(std::to_string(CompareNames(options.first.c_str(), options.second.c_str())));
    return EXIT_CODE_DONE;
}

int match(const Options& options) {
    const bool matches = WildcardMatch(options.first.c_str(), options.second.c_str()) != 0;
    printLine(matches ? "match" : "no match");
    return matches ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

}  // namespace

void addNameCommands(CLI::App& app, Action* action) {
    CLI::App* group = app.get_subcommand("name");
    group->require_subcommand(0, 1);
    // A required argument of the group's own would be taken before any command is looked for.
    const CLI::Option* window = group->get_option("ID")->required(false);
    group->parse_complete_callback([group, window] {
        if (group->get_subcommands().empty() && window->count() == 0) {
            throw CLI::RequiredError("ID, or one of the commands below \"name\",");
        }
    });
    const auto options = std::make_shared<Options>();
    const auto add = [&](const char* name, const char* description, int (*run)(const Options&)) {
        return addCommand(*group, name, description, options, run, action);
    };
    add("next", "Print the next name of a series: a9 a10, x[9] x[10], az aaa", next)
        ->add_option("NAME", options->first, "A name")
        ->required();
    add("previous", "Print the name before in a series", previous)
        ->add_option("NAME", options->first, "A name")
        ->required();
    CLI::App* order = add("compare",
                          "Print a negative number, 0 or a positive one as A comes before, with or "
                          "behind B; a9 comes before a10",
                          compare);
    order->add_option("A", options->first, "A name")->required();
    order->add_option("B", options->second, "Another")->required();
    CLI::App* pattern =
        add("match", "Tell whether a pattern stands for a text: 0 if so, 1 if not", match);
    pattern
        ->add_option("PATTERN", options->first,
                     "? for one character, * for any number, \\ before one that is meant itself")
        ->required();
    pattern->add_option("TEXT", options->second, "The text; the case of letters doesn't count")
        ->required();
}

}  // namespace juntora
