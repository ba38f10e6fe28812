// The environment, with names without regard to case.
#include <strings.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/kernel/process.h"

namespace juntora {
namespace {

/// The variable's name as the environment spells it; empty if it is not there.
std::string spellingOf(const std::string& name) {
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const char* end = std::strchr(*variable, '=');
        const auto length = end == nullptr ? 0 : static_cast<std::size_t>(end - *variable);
        if (length == name.size() && strncasecmp(*variable, name.c_str(), length) == 0) {
            return {*variable, length};
        }
    }
    return "";
}

}  // namespace

const char* GetEnvironment(const char* name) {
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
    const std::string name(assignment, static_cast<std::size_t>(equals - assignment));
    if (equals[1] == '\0') {
        for (std::string spelling; !(spelling = spellingOf(name)).empty();) {
            unsetenv(spelling.c_str());
        }
        return 0;
    }
    const std::string before = spellingOf(name);
    const bool isThere = std::getenv(name.c_str()) != nullptr || before.empty();
    return setenv(isThere ? name.c_str() : before.c_str(), equals + 1, 1) == 0 ? 0 : -1;
}

}  // namespace juntora
