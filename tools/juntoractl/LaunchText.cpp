#include "tools/juntoractl/LaunchText.h"

#include "platform/kernel/CommandLine.h"
#include "platform/messages.h"

namespace juntora {
namespace {

struct Meaning {
    DWORD error;
    const char* text;
};
constexpr Meaning MEANINGS[] = {
    {1,
     "the request could not be sent: it is too long, or its folder is gone or has a quote in it"},
    {ERROR_FILE_NOT_FOUND, "there is no such program"},
    {ERROR_PATH_NOT_FOUND, "there is no such folder"},
    {ERROR_ACCESS_DENIED, "the file is no program, or may not be run"},
    {ERROR_NOT_ENOUGH_MEMORY, "the system has no room for another process"},
    {ERROR_BAD_EXE_FORMAT, "the file is not in a form that can be run"},
};

}  // namespace

std::string quotedProgram(const std::string& program) {
    const bool isWord = !program.empty() && program.find_first_of(" \t") == std::string::npos;
    return isWord ? program : '"' + program + '"';
}

std::string quotedArguments(const std::vector<std::string>& words) {
    return kernel::joinCommandLine(words);
}

std::string launchFailure(int result) {
    for (const Meaning& known : MEANINGS) {
        if (static_cast<DWORD>(result) == known.error) {
            return known.text;
        }
    }
    return "error " + std::to_string(result);
}

}  // namespace juntora
