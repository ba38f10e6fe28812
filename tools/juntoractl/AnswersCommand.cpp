// answers: what users have had remembered instead of being asked again, by program.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "framework/CWinApp.h"
#include "messages/storedAnswers.h"
#include "tools/juntoractl/CommandLine.h"
#include "tools/juntoractl/ExitCode.h"
#include "tools/juntoractl/Output.h"
#include "tools/juntoractl/RegistryKey.h"

namespace juntora {
namespace {

struct Options {
    std::string forget;
    bool json = false;
};

struct Answer {
    std::string program;
    std::string key;
    std::string value;
};

std::vector<std::string> programs() {
    std::vector<std::string> names;
    OpenRegistryKey settings;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, PROFILES_KEY, KEY_READ, settings.out()) != ERROR_SUCCESS) {
        return names;
    }
    char name[256];
    for (DWORD index = 0, length = sizeof name;
         RegEnumKeyExA(settings, index, name, &length) == ERROR_SUCCESS;
         ++index, length = sizeof name) {
        names.emplace_back(name);
    }
    return names;
}

std::string sectionOf(const std::string& program) {
    return std::string(PROFILES_KEY) + "\\" + program + "\\" + ANSWERS_SECTION;
}

void addAnswers(const std::string& program, std::vector<Answer>* answers) {
    OpenRegistryKey section;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, sectionOf(program).c_str(), KEY_READ, section.out()) !=
        ERROR_SUCCESS) {
        return;
    }
    char key[1024];
    char value[256];
    DWORD length = sizeof key;
    DWORD size = sizeof value;
    for (DWORD index = 0;
         RegEnumValueA(section, index, key, &length, nullptr, value, &size) == ERROR_SUCCESS;
         ++index, length = sizeof key, size = sizeof value) {
        const std::string text(value, strnlen(value, size));
        if (!text.empty() && text != NO_ANSWER) {
            answers->push_back({program, key, text});
        }
    }
}

std::vector<Answer> allAnswers() {
    std::vector<Answer> answers;
    for (const std::string& program : programs()) {
        addAnswers(program, &answers);
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

/// In all programs: who is asked again once too often loses nothing.
int forget(const std::string& key) {
    bool wasThere = false;
    for (const Answer& answer : allAnswers()) {
        OpenRegistryKey section;
        if (answer.key == key && RegOpenKeyExA(HKEY_CURRENT_USER, sectionOf(answer.program).c_str(),
                                               KEY_WRITE, section.out()) == ERROR_SUCCESS) {
            wasThere |= RegDeleteValueA(section, key.c_str()) == ERROR_SUCCESS;
        }
    }
    if (!wasThere) {
        complain("no answer is remembered for " + key);
    }
    return wasThere ? EXIT_CODE_DONE : EXIT_CODE_REFUSED;
}

int run(const Options& options) {
    return options.forget.empty() ? print(options) : forget(options.forget);
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
