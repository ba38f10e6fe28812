// path: a path's normal form and its parts.
#include <utility>
#include <vector>

#include "common/PathName.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

constexpr std::size_t LABEL_WIDTH = 14;
constexpr char COMPONENT_SEPARATOR[] = " | ";

struct Options {
    std::string text;
    std::string base;
    std::string relativeTo;
    int abbreviation = 0;
    bool hasBase = false;
    bool isRelative = false;
    bool isAbbreviated = false;
    bool json = false;
};

int answer(const Options& options, const char* name, const CString& form) {
    if (options.json) {
        printJson({{name, static_cast<const char*>(form)}});
    } else {
        printLine(static_cast<const char*>(form));
    }
    return EXIT_CODE_DONE;
}

int printAbbreviation(const Options& options, const PathName& path) {
    int length = 0;
    const CString form = path.abbreviate(options.abbreviation, &length);
    if (!form.IsEmpty()) {
        return answer(options, "abbreviated", form);
    }
    if (options.json) {
        printJson({{"abbreviated", nullptr}, {"needed", -length}});
    } else {
        complain("an abbreviation that makes sense needs " + std::to_string(-length) +
                 " characters");
    }
    return EXIT_CODE_REFUSED;
}

std::string partOf(const PathName& path, void (PathName::*part)(CString&) const) {
    CString out;
    (path.*part)(out);
    return static_cast<const char*>(out);
}

std::vector<std::string> componentsOf(const PathName& path) {
    std::vector<std::string> components;
    CString component;
    for (int i = 0; path.getComponent(component, i), !component.IsEmpty(); ++i) {
        components.emplace_back(component);
    }
    return components;
}

Json partsOf(const PathName& path) {
    CString extension;
    path.getExtension(extension, false);
    PathName parent;
    path.getParent(parent);
    int length = 0;
    const CString displayName = path.getDisplayName(false, false, 0, &length);
    return {{"path", path.c_str()},
            {"entered", static_cast<const char*>(path.getEntered())},
            {"drive", partOf(path, &PathName::getDrive)},
            {"directory", partOf(path, &PathName::getDirectory)},
            {"base name", partOf(path, &PathName::getBaseName)},
            {"extension", static_cast<const char*>(extension)},
            {"stem", partOf(path, &PathName::getStem)},
            {"parent", parent.c_str()},
            {"components", componentsOf(path)},
            {"UNC root", partOf(path, &PathName::getUncRoot)},
            {"display name", static_cast<const char*>(displayName)}};
}

std::string plainText(const Json& value) {
    if (!value.is_array()) {
        return value.get<std::string>();
    }
    std::string text;
    for (const Json& each : value) {
        text.append(text.empty() ? "" : COMPONENT_SEPARATOR).append(each.get<std::string>());
    }
    return text;
}

int printParts(const Options& options, const PathName& path) {
    const Json parts = partsOf(path);
    if (options.json) {
        printJson(parts);
        return EXIT_CODE_DONE;
    }
    for (const auto& [label, value] : parts.items()) {
        const std::string text = plainText(value);
        std::string line = label;
        line.resize(text.empty() ? line.size() : LABEL_WIDTH, ' ');
        printLine(line + text);
    }
    return EXIT_CODE_DONE;
}

int run(const Options& options) {
    const PathName path = options.hasBase ? PathName(options.text.c_str(), options.base.c_str())
                                          : PathName(options.text.c_str());
    if (path.isEmpty()) {
        complain("an empty text names no file");
        return EXIT_CODE_REFUSED;
    }
    if (options.isRelative) {
        const PathName from(options.relativeTo.c_str());
        return answer(options, "relative", path.makeRelative(from.c_str(), true));
    }
    return options.isAbbreviated ? printAbbreviation(options, path) : printParts(options, path);
}

}  // namespace

void addPathCommand(CLI::App& app, Action* action) {
    auto options = std::make_shared<Options>();
    CLI::App* command =
        addCommand(app, "path", "Print a path's normal form and its parts", options, run, action);
    command->add_option("TEXT", options->text, "Any path; no file needs to be there")->required();
    command
        ->add_option("--base", options->base,
                     "Take TEXT as below this directory, by the text alone")
        ->each([options](const std::string&) { options->hasBase = true; });
    CLI::Option* relative =
        command
            ->add_option("--relative", options->relativeTo,
                         "Print the path as seen from this directory, and nothing else")
            ->each([options](const std::string&) { options->isRelative = true; });
    command
        ->add_option("--abbreviate", options->abbreviation,
                     "Print the path in at most this many characters, and nothing else")
        ->check(CLI::PositiveNumber)
        ->excludes(relative)
        ->each([options](const std::string&) { options->isAbbreviated = true; });
    addJsonFlag(command, &options->json, "Print an object");
}

}  // namespace juntora
