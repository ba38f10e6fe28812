// The environment, with names without regard to case and the search path in the platform's form.
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/files/CaseFolding.h"
#include "platform/kernel/SearchPath.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr char SEARCH_PATH[] = "PATH";

/// The variable's name as the environment spells it; empty if it is not there.
std::string spellingOf(const std::string& name) {
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const char* end = std::strchr(*variable, '=');
        const auto length = end == nullptr ? 0 : static_cast<std::size_t>(end - *variable);
        if (files::equalIgnoringCase({*variable, length}, name)) {
            return {*variable, length};
        }
    }
    return "";
}

/// A value of the search path for the caller, which may hold it for as long as it holds others.
const char* ownPathText() {
    static std::string text;
    const char* value = std::getenv(SEARCH_PATH);
    text = kernel::platformSearchPath(value == nullptr ? "" : value);
    return value == nullptr ? nullptr : text.c_str();
}

}  // namespace

const char* GetEnvironment(const char* name) {
    if (files::equalIgnoringCase(name, SEARCH_PATH)) {
        return ownPathText();
    }
    if (const char* exact = std::getenv(name)) {
        return exact;
    }
    const std::string spelling = spellingOf(name);
    return spelling.empty() ? nullptr : std::getenv(spelling.c_str());
}

int PutEnvironment(const char* assignment) {
    const char* equals = std::strchr(assignment, '=');
    if (equals == nullptr || equals == assignment) {
        return -1;
    }
    std::string name(assignment, static_cast<std::size_t>(equals - assignment));
    std::string value = equals + 1;
    if (files::equalIgnoringCase(name, SEARCH_PATH)) {
        name = SEARCH_PATH;
        value = kernel::hostSearchPath(value);
    }
    if (equals[1] != '\0' && value.empty()) {
        return -1;  // No folder of the list is there, and without any no program would be found.
    }
    if (value.empty()) {
        for (std::string spelling; !(spelling = spellingOf(name)).empty();) {
            unsetenv(spelling.c_str());
        }
        return 0;
    }
    const std::string before = spellingOf(name);
    const bool isThere = std::getenv(name.c_str()) != nullptr || before.empty();
    return setenv(isThere ? name.c_str() : before.c_str(), value.c_str(), 1) == 0 ? 0 : -1;
}

}  // namespace juntora
