// config: the suite's settings, and any other file of that form. No hub takes part.
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/files/access.h"
#include "platform/files/privateProfile.h"
#include "platform/kernel/errorText.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "setup/configFile.h"
#include "setup/configValues.h"
#include "setup/pathItems.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

struct Options {
    std::string section;
    std::string key;
    std::string value;
    std::string file;
    bool quote = false;
    bool json = false;

    /// Null for a list of the names; none that is given is empty.
    const char* sectionName() const { return section.empty() ? nullptr : section.c_str(); }
    const char* keyName() const { return key.empty() ? nullptr : key.c_str(); }
};

std::string errorText(DWORD error) {
    char* buffer = nullptr;
    FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, error, 0, &buffer);
    std::string text(buffer ? buffer : "");
    LocalFree(buffer);
    return text;
}

int refuse(const std::string& file, DWORD error) {
    complain(file + ": " + errorText(error));
    return EXIT_CODE_REFUSED;
}

/// The file that is meant; nothing, after a complaint, where there is none.
std::optional<std::string> fileOf(const Options& options) {
    std::string file = options.file.empty() ? GetConfigFilePath() : options.file;
    if (file.empty()) {
        complain(
            "there are no settings. They come from the file that the registry's VoltaraConfigFile "
            "names, and from nowhere else where its key is there; else from the one that "
            "VOLTARAINIPATH names; else from tools/voltara/Voltara.ini of the installation; "
            "without one from /etc/juntora/Voltara.ini. Put a file there, or name one by --file.");
        return std::nullopt;
    }
    return file;
}

/// What GetConfigString gives, whole, with its last error.
std::string readAll(const Options& options, const std::string& file, DWORD* error) {
    constexpr std::size_t LARGEST = std::size_t{1} << 30;
    std::string text;
    for (std::size_t size = 4096;; size *= 8) {
        text.resize(size);
        SetLastError(ERROR_SUCCESS);
        GetConfigString(options.sectionName(), options.keyName(), "", text.data(),
                        static_cast<DWORD>(size), file.c_str(), options.quote);
        *error = GetLastError();
        if (*error != ERROR_MORE_DATA || size >= LARGEST) {
            return text;
        }
    }
}

std::vector<std::string> namesIn(const std::string& list) {
    std::vector<std::string> names;
    for (std::size_t at = 0; at < list.size() && list[at] != '\0';) {
        names.emplace_back(list.c_str() + at);
        at += names.back().size() + 1;
    }
    return names;
}

int path(const Options& options) {
    const auto file = fileOf(options);
    if (!file) {
        return EXIT_CODE_REFUSED;
    }
    if (options.json) {
        printJson({{"path", *file}});
    } else {
        printLine(*file);
    }
    return EXIT_CODE_DONE;
}

/// The names of sections, or of the keys of one.
int list(const Options& options) {
    const auto file = fileOf(options);
    if (!file) {
        return EXIT_CODE_REFUSED;
    }
    DWORD error = ERROR_SUCCESS;
    const std::vector<std::string> names = namesIn(readAll(options, *file, &error));
    if (error != ERROR_SUCCESS) {
        const bool isThere = CheckAccess(file->c_str(), ACCESS_EXISTS);
        if (error != ERROR_FILE_NOT_FOUND || !isThere) {
            return refuse(*file, error);
        }
        complain(*file + (options.section.empty() ? " has no sections"
                                                  : " has no keys in [" + options.section + "]"));
        return EXIT_CODE_REFUSED;
    }
    if (options.json) {
        printJson(names);
    } else {
        std::for_each(names.begin(), names.end(), printLine);
    }
    return EXIT_CODE_DONE;
}

int get(const Options& options) {
    const auto file = fileOf(options);
    if (!file) {
        return EXIT_CODE_REFUSED;
    }
    DWORD error = ERROR_SUCCESS;
    std::string value = readAll(options, *file, &error);
    value.resize(std::min(value.find('\0'), value.size()));
    if (error == ERROR_FILE_NOT_FOUND && CheckAccess(file->c_str(), ACCESS_EXISTS)) {
        complain(*file + " has no " + options.key + " in [" + options.section + "]");
        return EXIT_CODE_REFUSED;
    }
    if (error != ERROR_SUCCESS) {
        return refuse(*file, error);
    }
    if (options.json) {
        printJson({{"file", *file},
                   {"section", options.section},
                   {"key", options.key},
                   {"value", value}});
    } else {
        printLine(value);
    }
    return EXIT_CODE_DONE;
}

/// Tells of items of the present value that a write drops, since nobody can say which of the new
/// paths came from them.
void tellOfLostItems(const Options& options, const std::string& file) {
    std::string present(std::size_t{1} << 16, '\0');
    present.resize(GetPrivateProfileStringA(options.section.c_str(), options.key.c_str(), "",
                                            present.data(), static_cast<DWORD>(present.size()),
                                            file.c_str()));
    for (const std::string& name : unsetVariables(present)) {
        complain("$" + name + " of the value that was there is not set, and has been left out");
    }
}

int set(const Options& options) {
    const auto file = fileOf(options);
    if (!file) {
        return EXIT_CODE_REFUSED;
    }
    if (const auto names = unsetVariables(options.value); !names.empty()) {
        complain("$" + names.front() +
                 " is not set, and its item would be lost. Set it; its name ends at a \"\\\".");
        return EXIT_CODE_REFUSED;
    }
    tellOfLostItems(options, *file);
    WriteConfigString(options.section.c_str(), options.key.c_str(), options.value.c_str(),
                      file->c_str(), options.quote);
    const DWORD error = GetLastError();
    if (error == ERROR_INVALID_PARAMETER) {
        complain(
            "this could not be read again: a section takes no \"]\", a key no \"=\" and no \";\" "
            "or "
            "\"[\" in front, and neither these nor a value a line end");
        return EXIT_CODE_REFUSED;
    }
    if (error != ERROR_SUCCESS) {
        return refuse(*file, error);
    }
    return options.json ? get(options) : EXIT_CODE_DONE;
}

const CLI::Validator NOT_EMPTY(
    [](const std::string& text) { return text.empty() ? "it is empty" : ""; }, "");

using Run = int (*)(const Options& options);

CLI::App* addConfigCommand(CLI::App& group, const char* name, const char* description, Run run,
                           const char* jsonDescription, Action* action) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(group, name, description, options, run, action);
    const bool isOfOne = run == get || run == set;
    if (isOfOne || std::string(name) == "keys") {
        command->add_option("SECTION", options->section, "The section's name")
            ->required()
            ->check(NOT_EMPTY);
    }
    if (isOfOne) {
        command->add_option("KEY", options->key, "The key's name")->required()->check(NOT_EMPTY);
        command->add_flag("--quote", options->quote, "Put each item of a list in double quotes");
    }
    if (run == set) {
        command->add_option("VALUE", options->value, "The value")->required();
    }
    if (run != path) {
        command->add_option("--file", options->file, "Another file than the user's own Voltara.ini")
            ->check(NOT_EMPTY);
    }
    addJsonFlag(command, &options->json, jsonDescription);
    return command;
}

}  // namespace

void addConfigCommands(CLI::App& app, Action* action) {
    CLI::App* group = app.add_subcommand("config", "Read and change the suite's settings");
    group->require_subcommand(1);
    addConfigCommand(*group, "path", "Print the file in use, and make it if it is not there yet",
                     path, "Print an object", action);
    addConfigCommand(*group, "sections", "List the sections", list, "Print an array", action);
    addConfigCommand(*group, "keys", "List the keys of a section", list, "Print an array", action);
    addConfigCommand(*group, "get",
                     "Print a value; in a list, variables and paths relative to the user's own "
                     "Voltara.ini are expanded",
                     get, "Print an object", action);
    addConfigCommand(
        *group, "set",
        "Write a value; in a list, variables are expanded, and paths to which shorthand of "
        "the present value expands go back as that shorthand",
        set, "Print what reads back", action);
}

}  // namespace juntora
