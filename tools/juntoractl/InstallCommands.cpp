// root, search: where the suite is installed, and where its setup files lie. No hub takes part.
#include <memory>
#include <string>

#include "platform/files/installRoot.h"
#include "setup/programTree.h"
#include "setup/setupSearch.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::string name;
    bool json = false;
};

int root(const Options& options) {
    const std::string root = InstallRoot();
    if (root.empty()) {
        complain(
            "this program lies outside of an installation, which has it in bin/ beside "
            "share/voltara/; name the installation in JUNTORA_ROOT");
        return EXIT_CODE_REFUSED;
    }
    if (!options.json) {
        printLine(root);
        return EXIT_CODE_DONE;
    }
    std::string tools;
    GetToolsDir(&tools);
    printJson({{"root", root}, {"tools", tools}, {"development", LocateProgramTree().development}});
    return EXIT_CODE_DONE;
}

int search(const Options& options) {
    std::string path;
    if (!SearchFile(options.name.c_str(), &path)) {
        complain(options.name +
                 " is in none of the folders \"mrdsetup\": in HOME, in the installation, in "
                 "/etc/juntora");
        return EXIT_CODE_REFUSED;
    }
    if (options.json) {
        printJson({{"name", options.name}, {"path", path}});
    } else {
        printLine(path);
    }
    return EXIT_CODE_DONE;
}

}  // namespace

void addInstallCommands(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "root", "Print where the suite is installed", options, root, action);
    addJsonFlag(command, &options->json,
                "Print an object: root; the folder of the tools; that of a development tree's "
                "programs, if this is one of them");

    options = std::make_shared<Options>();
    command = addCommand(app, "search",
                         "Find a setup file: the user's, the installation's, the "
                         "machine's",
                         options, search, action);
    command->add_option("NAME", options->name, "As PRODUCT/VERSION/FILE")->required();
    addJsonFlag(command, &options->json, "Print an object");
}

}  // namespace juntora
