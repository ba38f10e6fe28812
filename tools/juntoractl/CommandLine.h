// The command line of juntoractl: each group of commands adds its own.
#pragma once

#include <functional>
#include <string>

#include <CLI/CLI.hpp>

#include "platform/types.h"

namespace juntora {

/// The chosen command, to be run after the whole line has been understood; returns an exit code.
using Action = std::function<int()>;

void addAppsCommand(CLI::App& app, Action* action);
void addSessionsCommand(CLI::App& app, Action* action);
/// find, name, alive, running
void addQueryCommands(CLI::App& app, Action* action);
/// show, close-all, command, status
void addRequestCommands(CLI::App& app, Action* action);
void addLaunchCommand(CLI::App& app, Action* action);
/// lock status, lock hold
void addLockCommands(CLI::App& app, Action* action);
void addWatchCommand(CLI::App& app, Action* action);
void addMonitorCommand(CLI::App& app, Action* action);
void addToolCommand(CLI::App& app, Action* action);
void addPathCommand(CLI::App& app, Action* action);
void addListCommand(CLI::App& app, Action* action);
void addScreenshotCommand(CLI::App& app, Action* action);
void addCheckCommand(CLI::App& app, Action* action);
/// library list-changed, library changed, library close
void addLibraryCommands(CLI::App& app, Action* action);
/// registry get, set, delete, list
void addRegistryCommands(CLI::App& app, Action* action);

/// config path, sections, keys, get, set
void addConfigCommands(CLI::App& app, Action* action);
/// root, search
void addInstallCommands(CLI::App& app, Action* action);

void addRegisterCommand(CLI::App& app, Action* action);
void addAssociationsCommand(CLI::App& app, Action* action);
void addCleanCommand(CLI::App& app, Action* action);
/// message text, body, help, box, dialog, list
void addMessageCommands(CLI::App& app, Action* action);
void addAnswersCommand(CLI::App& app, Action* action);
/// name next, name previous, name compare, name match: below the command that addQueryCommands
/// adds.
void addNameCommands(CLI::App& app, Action* action);
void addSwitchCommand(CLI::App& app, Action* action);
void addOpenCommand(CLI::App& app, Action* action);

/// Adds a command that runs `run` with its options, which live as long as the command line does. Of
/// a command and one below it the latter runs.
template <typename Options, typename Run>
CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::shared_ptr<Options>& options, Run run, Action* action) {
    CLI::App* command = app.add_subcommand(name, description);
    command->callback([=] {
        if (command->get_subcommands().empty()) {
            *action = [=] { return run(*options); };
        }
    });
    return command;
}

/// What the commands that ask the hub take between them.
struct RequestOptions {
    std::string subject;  ///< A tool, by its name or its window.
    std::string text;
    int code = 0;
    bool json = false;

    /// The subject, where that is a window.
    HWND window() const;
};

struct RequestCommand {
    CLI::App* command;
    RequestOptions* options;  ///< Live as long as the command line does.
};

/// Adds a command that runs `request` with a hub in reach, and its flag --json.
RequestCommand addRequest(CLI::App& app, const std::string& name, const std::string& description,
                          const std::string& jsonDescription, int (*request)(const RequestOptions&),
                          Action* action);

void addJsonFlag(CLI::App* command, bool* json, const std::string& description);
/// A window in hexadecimal; anything else is wrong usage.
CLI::Option* addWindow(CLI::App* command, const std::string& name, std::string* window,
                       const std::string& description);

}  // namespace juntora
