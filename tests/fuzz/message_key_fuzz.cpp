// Any text as one that names a message.
#include "messages/messageHelp.h"
#include "tests/fuzz/Fuzz.h"

using namespace juntora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = FuzzInput(data, size).text();
    std::string module = "unchanged";
    int number = 4711;
    const int result = parseMessageKey(text.c_str(), &module, &number);
    const std::size_t open = text.find('(');
    const std::size_t dash = text.find('-');
    const std::size_t close = text.find(')');
    const bool isKey = open < dash && dash < close && close != std::string::npos;
    mustHold(result == (isKey ? 0 : 1), "a key is one, and nothing else is");
    if (isKey) {
        mustHold("(" + module + "-" == text.substr(open, dash - open + 1), "the module is between");
        mustHold(number == std::atoi(text.c_str() + dash + 1), "the number is behind the dash");
    } else {
        mustHold(module == "unchanged" && number == 4711, "nothing is changed");
    }
    return 0;
}
