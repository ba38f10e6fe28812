// associations: which tool opens which document, in the registry and on the desktop. No hub takes
// part.
#include "registration/fileAssociations.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

constexpr std::size_t EXTENSION_WIDTH = 6;

struct Options {
    bool remove = false;
    bool json = false;
};

void printTypes(const AssociationReport& report) {
    printLine(std::to_string(report.written) + " keys written");
    for (const DesktopType& type : report.types) {
        std::string line = type.extension;
        line.resize(std::max(line.size(), EXTENSION_WIDTH), ' ');
        line += type.display + ": ";
        printLine(line + (type.program.empty() ? "its tool is not installed" : type.program));
    }
}

void printReport(const AssociationReport& report) {
    Json types = Json::array();
    for (const DesktopType& type : report.types) {
        types.push_back({{"extension", type.extension},
                         {"name", type.display},
                         {"program", type.program.empty() ? Json() : Json(type.program)}});
    }
    Json failed = Json::array();
    for (const KeyWrite& write : report.failed) {
        failed.push_back(write.key);
    }
    printJson({{"written", report.written}, {"failed", failed}, {"types", types}});
}

int tell(const std::vector<std::string>& problems) {
    for (const std::string& problem : problems) {
        complain(problem);
    }
    return problems.empty() ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

int run(const Options& options) {
    if (options.remove) {
        return tell(removeDesktopTypes());
    }
    const AssociationReport report = writeFileAssociations();
    options.json ? printReport(report) : printTypes(report);
    if (!report.failed.empty()) {
        complain(std::to_string(report.failed.size()) +
                 " keys could not be written, the first being HKCU\\" + report.failed.front().key);
    }
    const int code = tell(report.problems);
    return report.isWhole && report.failed.empty() ? code : EXIT_CODE_REFUSED;
}

}  // namespace

void addAssociationsCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "associations",
                   "Have your documents opened by the suite's tools, also from the desktop",
                   options, run, action);
    command->add_flag("--remove", options->remove,
                      "Take the document types from the desktop again; the registry stays");
    addJsonFlag(command, &options->json, "Print an object with what has been written");
}

}  // namespace juntora
