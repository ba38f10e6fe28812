// lock: who has a file in hand, and having it in hand. No hub takes part.
#include <algorithm>
#include <string>
#include <vector>

#include "common/FileLock.h"
#include "common/PathName.h"
#include "platform/desktop/desktop.h"
#include "platform/desktop/message.h"
#include "platform/kernel/input.h"
#include "platform/kernel/signals.h"
#include "platform/kernel/sync.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"

namespace juntora {
namespace {

constexpr char MONITOR_KIND[] = "monitor";

struct Options {
    std::string file;
    std::string kind;
    DWORD timeout = 0;
    bool json = false;
};

/// The bits that a look from outside can show: who looks holds nothing itself.
constexpr struct {
    int bit;
    const char* meaning;
} STATUS_BITS[] = {
    {LOCK_READ_BY_OTHER, "somebody has a read lock"},
    {LOCK_WRITTEN_BY_OTHER, "somebody has the write lock"},
    {LOCK_WATCHED_BY_OTHER, "somebody watches the file"},
};

const char* meaningOf(int result) {
    switch (result) {
        case LOCK_DONE:
            return "success";
        case LOCK_SYSTEM_FAILED:
            return "a system call failed";
        case LOCK_TIMED_OUT:
            return "not to be had within the time given";
        default:
            return "no memory";
    }
}

/// The layer has told why.
bool hasDesktop() { return OpenDesktop(); }

int status(const Options& options) {
    if (!hasDesktop()) {
        return EXIT_CODE_REFUSED;
    }
    const PathName path(options.file.c_str());
    const int bits = FileLock(path.c_str()).status();
    Json object{{"file", path.c_str()}, {"status", bits}, {"bits", Json::array()}};
    std::vector<std::string> lines{std::to_string(bits)};
    for (const auto& [bit, meaning] : STATUS_BITS) {
        if ((bits & bit) != 0) {
            object["bits"].push_back({{"value", bit}, {"meaning", meaning}});
            lines.push_back(std::to_string(bit) + ": " + meaning);
        }
    }
    if (options.json) {
        printJson(object);
    } else {
        std::for_each(lines.begin(), lines.end(), printLine);
    }
    return EXIT_CODE_DONE;
}

int take(FileLock& lock, const Options& options) {
    if (options.kind == MONITOR_KIND) {
        return lock.setMonitored(1);
    }
    return lock.lock(nullptr, options.timeout,
                     options.kind == "read" ? LOCK_MODE_READ : LOCK_MODE_WRITE);
}

void report(const PathName& path, const Options& options, int result) {
    std::string meaning = meaningOf(result);
    if (result == LOCK_SYSTEM_FAILED) {
        meaning += ", error " + std::to_string(GetLastError());
    }
    if (options.json) {
        printJson({{"file", path.c_str()},
                   {"kind", options.kind},
                   {"result", result},
                   {"meaning", meaning}});
    } else {
        printLine(std::to_string(result) + ": " + meaning);
    }
}

void takeInput(const char*, std::size_t count, void*) {
    if (count == 0) {
        PostQuitMessage(0);
    }
}

int hold(const Options& options) {
    if (!hasDesktop()) {
        return EXIT_CODE_REFUSED;
    }
    const PathName path(options.file.c_str());
    FileLock lock(path.c_str());
    const int result = take(lock, options);
    if (result == LOCK_DONE && (!QuitOnSignals() || !WatchStandardInput(takeInput, nullptr))) {
        complain("the end of the input cannot be waited for");
        return EXIT_CODE_REFUSED;
    }
    report(path, options, result);
    if (result != LOCK_DONE) {
        return EXIT_CODE_REFUSED;
    }
    MSG message{};
    while (GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    UnwatchStandardInput();
    return EXIT_CODE_DONE;
}

CLI::App* addLockCommand(CLI::App& app, const char* word, const char* description,
                         const std::shared_ptr<Options>& options, int (*run)(const Options&),
                         Action* action) {
    CLI::App* command = addCommand(app, word, description, options, run, action);
    command->add_option("FILE", options->file, "The file's path; it need not exist")->required();
    addJsonFlag(command, &options->json, "Print an object");
    return command;
}

}  // namespace

void addLockCommands(CLI::App& app, Action* action) {
    CLI::App* group = app.add_subcommand("lock", "Tell who has a file in hand, or take it in hand");
    group->require_subcommand(1);
    addLockCommand(*group, "status", "Print the status of a file: a sum of bits, and their meaning",
                   std::make_shared<Options>(), status, action);

    auto options = std::make_shared<Options>();
    CLI::App* command =
        addLockCommand(*group, "hold",
                       "Take a file, print the result, and hold it until the input ends or an "
                       "interrupt comes",
                       options, hold, action);
    command->add_option("KIND", options->kind, "read, write or monitor")
        ->required()
        ->check(CLI::IsMember({"read", "write", MONITOR_KIND}));
    command
        ->add_option("--timeout", options->timeout,
                     "Wait so many milliseconds for a writer to end, 0 if not given; a monitor "
                     "never waits")
        ->type_name("MS")
        ->check(CLI::Range(DWORD{0}, INFINITE - 1));
}

}  // namespace juntora
