#include "setup/splitCommand.h"

#include <string>

#include "common/TextTokens.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr int PROGRAM = 0;
constexpr int FIRST_ARGUMENT = 1;

/// Whether this is a system without the NT kernel, which takes no quotes around a program.
bool isOldSystem() {
    constexpr DWORD WITHOUT_NT_KERNEL = 0x80000000;
    constexpr DWORD MAJOR_VERSION = 0xFF;
    const DWORD version = GetVersion();
    return (version & WITHOUT_NT_KERNEL) != 0 && (version & MAJOR_VERSION) < 4;
}

}  // namespace

void SplitCommand(const char* commandLine, CString& program, CString& arguments) {
    const CString line(commandLine);
    program.Empty();
    arguments.Empty();
    TextTokens words(line, " \t\n", 1, "\"");
    words.get(PROGRAM, program);
    if (words.count() > FIRST_ARGUMENT) {
        arguments = static_cast<const char*>(line) + words.start(FIRST_ARGUMENT) - 1;
    }
    if (!program.IsEmpty() && !isOldSystem()) {
        program = CString('"' + std::string(program) + '"');
    }
}

}  // namespace juntora
