// How this process was started.
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "platform/kernel/CommandLine.h"
#include "platform/kernel/StartRecords.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace kernel {
namespace {

/// What the kernel keeps of the arguments: for a library in a program that has not told them.
std::vector<std::string> argumentsFromKernel() {
    std::vector<std::string> arguments;
    std::FILE* file = std::fopen("/proc/self/cmdline", "re");
    if (file == nullptr) {
        return arguments;
    }
    std::string text;
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        text += static_cast<char>(c);
        if (c == '\0') {
            text.pop_back();
            arguments.push_back(text);
            text.clear();
        }
    }
    std::fclose(file);
    return arguments;
}

std::vector<std::string>& arguments() {
    static auto* const all = new std::vector<std::string>;
    if (all->empty()) {
        *all = argumentsFromKernel();
    }
    return *all;
}

std::string makeTail() {
    if (ownStart().hasCommandLine) {
        return std::string(tailOf(ownStart().commandLine));
    }
    const std::vector<std::string>& all = arguments();
    return all.empty() ? "" : joinCommandLine({all.begin() + 1, all.end()});
}

}  // namespace
}  // namespace kernel

void SetProgramArguments(int argc, char** argv) { kernel::arguments().assign(argv, argv + argc); }

DWORD GetModuleFileNameA(char* buffer, DWORD capacity) {
    const ssize_t length = readlink("/proc/self/exe", buffer, capacity);
    if (length <= 0 || static_cast<std::size_t>(length) >= capacity) {
        return 0;
    }
    buffer[length] = '\0';
    return static_cast<DWORD>(length);
}

int ProgramArgumentCount() { return static_cast<int>(kernel::arguments().size()); }

const char* ProgramArgument(int index) {
    const std::vector<std::string>& all = kernel::arguments();
    const bool isThere = index >= 0 && static_cast<std::size_t>(index) < all.size();
    return isThere ? all[static_cast<std::size_t>(index)].c_str() : nullptr;
}

char* CommandLineTail() {
    static auto* const tail = new std::string(kernel::makeTail());
    return tail->data();
}

int StartShowState() {
    const int state = kernel::ownStart().showState;
    return state == kernel::NO_SHOW_STATE ? SW_SHOWDEFAULT : state;
}

void LeaveStartersPipes() {
    if (!kernel::ownStart().hasCommandLine) {
        return;
    }
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nothing >= 0) {
        dup2(nothing, STDIN_FILENO);
        close(nothing);
    }
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

DWORD GetVersion() {
    constexpr DWORD MAJOR = 5;  // Of the platform that this layer stands for.
    return MAJOR;
}

}  // namespace juntora
