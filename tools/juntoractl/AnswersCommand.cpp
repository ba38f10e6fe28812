// answers: what users have had remembered instead of being asked again, by program.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "framework/CWinApp.h"
#include "messages/storedAnswers.h"
#include "platform/files/CaseFolding.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"
#include "tools/juntoractl/RegistryKey.h"
#include "tools/juntoractl/RegistryValue.h"

namespace juntora {
namespace {

struct Options {
    std::optional<std::string> forget;
    bool json = false;
};

struct Answer {
    std::string program;
    std::string key;
    std::string value;
};

std::string sectionOf(const std::string& program) {
    return std::string(PROFILES_KEY) + "\\" + program + "\\" + ANSWERS_SECTION;
}

/// Reads from a key of the user's; one that is not there has nothing. Any other error is told.
template <class Things>
Things readBelow(const std::string& path, DWORD (*read)(HKEY key, Things* things)) {
    Things things;
    OpenRegistryKey key;
    DWORD error = RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), KEY_READ, key.out());
    if (error == ERROR_SUCCESS) {
        error = read(key, &things);
    }
    if (error != ERROR_SUCCESS && error != ERROR_FILE_NOT_FOUND) {
        complain("HKCU\\" + path + ": " + registryErrorText(error));
    }
    return things;
}

std::vector<Answer> allAnswers() {
    std::vector<Answer> answers;
    for (const std::string& program :
         readBelow<std::vector<std::string>>(PROFILES_KEY, readSubkeyNames)) {
        for (const RegistryValue& value :
             readBelow<std::vector<RegistryValue>>(sectionOf(program), readRegistryValues)) {
            const std::string text =
                value.type == REG_SZ ? value.json().get<std::string>() : std::string();
            if (!text.empty() && text != NO_ANSWER) {
                answers.push_back({program, value.name, text});
            }
        }
    }
    return answers;
}

int print(const Options& options) {
    for (const Answer& answer : allAnswers()) {
        if (options.json) {
            printJson({{"program", answer.program}, {"key", answer.key}, {"answer", answer.value}});
        } else {
            printLine(answer.program + "  " + answer.key + "  " + answer.value);
        }
    }
    return EXIT_CODE_DONE;
}

DWORD removeAnswer(const Answer& answer) {
    OpenRegistryKey section;
    const DWORD error = RegOpenKeyExA(HKEY_CURRENT_USER, sectionOf(answer.program).c_str(),
                                      KEY_WRITE, section.out());
    return error == ERROR_SUCCESS ? RegDeleteValueA(section, answer.key.c_str()) : error;
}

/// In all programs: who is asked again once too often loses nothing.
int forget(const std::string& key) {
    bool isThere = false;
    int result = EXIT_CODE_DONE;
    for (const Answer& answer : allAnswers()) {
        if (!files::equalIgnoringCase(answer.key, key)) {
            continue;
        }
        isThere = true;
        if (const DWORD error = removeAnswer(answer); error != ERROR_SUCCESS) {
            complain(answer.program + ": " + registryErrorText(error));
            result = EXIT_CODE_REFUSED;
        }
    }
    if (!isThere) {
        complain("no answer is remembered for " + key);
        result = EXIT_CODE_REFUSED;
    }
    return result;
}

int run(const Options& options) {
    return options.forget ? forget(*options.forget) : print(options);
}

}  // namespace

void addAnswersCommand(CLI::App& app, Action* action) {
    const auto options = std::make_shared<Options>();
    CLI::App* command = addCommand(
        app, "answers", "List the answers that are remembered, by program", options, run, action);
    command->add_option("--forget", options->forget,
                        "Have this question asked again, by module and number: TVCOMMN-1821");
    addJsonFlag(command, &options->json, "As JSON objects, one a line");
}

}  // namespace juntora
