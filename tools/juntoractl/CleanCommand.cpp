// clean: the suite's classes in an administrator's own part of the registry. No hub takes part.
#include <algorithm>

#include "common/PerUserRegistration.h"
#include "registration/userCleanUp.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"
#include "tools/juntoractl/RegistryKey.h"

namespace juntora {
namespace {

struct Options {
    bool isDry = false;
    bool json = false;
};

void print(const Options& options, const std::string& key, bool isThere) {
    if (options.json) {
        printJson({{"key", "HKCU\\" + key}, {"deleted", !isThere}});
    } else {
        printLine("HKCU\\" + key);
    }
}

int run(const Options& options) {
    if (!IsUserAdministrator()) {
        complain(
            "only an administrator's own classes are cleaned, since they hide those of the "
            "machine; yours are what you work with, and stay");
        return EXIT_CODE_REFUSED;
    }
    const CleanUpTable table = readCleanUp();
    std::vector<std::string> before;
    std::vector<std::string> after;
    DWORD error = findPresentKeys(table, &before);
    if (error == ERROR_SUCCESS) {
        if (!options.isDry) {
            deleteKeys(table);
        }
        error = findPresentKeys(table, &after);
    }
    if (error != ERROR_SUCCESS) {
        complain("HKCU: " + registryErrorText(error));
        return EXIT_CODE_REFUSED;
    }
    for (const std::string& key : before) {
        const bool isThere = std::ranges::find(after, key) != after.end();
        print(options, key, isThere);
        if (isThere && !options.isDry) {
            complain("HKCU\\" + key + " could not be deleted");
        }
    }
    const bool isDone = options.isDry || after.empty();
    return isDone && table.isWhole ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

}  // namespace

void addCleanCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "clean",
                   "Take the suite's classes out of your own part of the registry, as an "
                   "administrator; print the keys",
                   options, run, action);
    command->add_flag("--dry-run", options->isDry, "Only print the keys that would go");
    addJsonFlag(command, &options->json, "Print an object for each key");
}

}  // namespace juntora
