// check: whether a path is legal where it points to.
#include "common/PathCheck.h"
#include "common/PathName.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

constexpr int KIND_OF_VOLUME = -1;

struct Options {
    std::string path;
    int kind = KIND_OF_VOLUME;
    bool json = false;
};

const char* meaningOf(unsigned long error) {
    switch (error) {
        case PATH_ERROR_LONG_EXTENSION:
            return "an extension has more than 3 characters";
        case PATH_ERROR_LONG_BASE:
            return "a name has more than 8 characters in front of its dot";
        case PATH_ERROR_CHARACTER:
            return "a name holds a character that is forbidden";
        case PATH_ERROR_SECOND_DOT:
            return "a name has a second dot";
        case PATH_ERROR_LONG_COMPONENT:
            return "a name has more than 255 characters";
        case PATH_ERROR_LONG_PATH:
            return "the path has more than 260 characters";
        default:
            return "not legal, for a reason that has no number";
    }
}

int run(const Options& options) {
    const PathName path(options.path.c_str());
    unsigned long error = 0;
    const int result = options.kind == KIND_OF_VOLUME ? path.checkForVolume(&error)
                                                      : path.checkForKind(options.kind, &error);
    const std::string meaning = result == 1 ? "legal"
                                : result == 0
                                    ? meaningOf(error)
                                    : (path.isEmpty() ? "an empty text names no file"
                                                      : "the path's volume cannot be asked");
    if (options.json) {
        Json object{
            {"path", path.c_str()}, {"legal", result == 1}, {"error", nullptr}, {"text", meaning}};
        if (error != 0) {
            object["error"] = error;
        }
        printJson(object);
    } else if (result < 0) {
        complain(meaning);
    } else {
        printLine(error != 0 ? std::to_string(error) + "  " + meaning : meaning);
    }
    return result == 1 ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

}  // namespace

void addCheckCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(app, "check", "Tell whether a path is legal on its volume",
                                   options, run, action);
    command->add_option("PATH", options->path, "Any path; no file needs to be there")->required();
    command
        ->add_option("--kind", options->kind,
                     "By the rules of a kind of file system, wherever the path points to: 0 FAT "
                     "with short names, 1 FAT with long names, 2 NTFS, 3 HPFS, 4 FAT32, 5 NetWare, "
                     "6 POSIX")
        ->check(CLI::Range(static_cast<int>(FILE_SYSTEM_FAT_SHORT),
                           static_cast<int>(FILE_SYSTEM_POSIX)));
    addJsonFlag(command, &options->json, "Print an object");
}

}  // namespace juntora
