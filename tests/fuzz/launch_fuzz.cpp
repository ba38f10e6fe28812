// The text of a launch, and the command line in it. Nothing is started.
#include <string>
#include <string_view>
#include <vector>

#include "hub/LaunchRequest.h"
#include "platform/kernel/CommandLine.h"
#include "tests/fuzz/Fuzz.h"

using namespace juntora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const LaunchRequest request(text);
    mustHold(!request.isUsable() || !request.directory.empty(), "a usable launch has a folder");
    mustHold(text.ends_with(request.command), "the command is the text's end");

    const std::vector<std::string> words = kernel::splitCommandLine(request.command);
    mustHold(!words.empty(), "a line has a first word");
    mustHold(request.command.ends_with(kernel::tailOf(request.command)), "the tail is the end");
    // But for the program's own word, in which no quote can stand.
    const std::vector<std::string> arguments(words.begin() + 1, words.end());
    const std::vector<std::string> again =
        kernel::splitCommandLine("program " + kernel::joinCommandLine(arguments));
    mustHold(std::vector<std::string>(again.begin() + 1, again.end()) == arguments,
             "joined words split as they were");
    return 0;
}
