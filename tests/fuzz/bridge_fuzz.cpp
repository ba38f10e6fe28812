// The texts that the bridge reads: launches with the program in quotes, and commands for its rows.
#include <cstring>
#include <string>
#include <vector>

#include "bridge/RequestTexts.h"
#include "tests/fuzz/Fuzz.h"

using namespace juntora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    if (const auto launch = readQuotedLaunch(text)) {
        mustHold(!launch->program.empty() && launch->program.size() <= 259, "a program's length");
        mustHold(launch->program.find('"') == launch->program.npos, "no quote is left in it");
        mustHold(text.ends_with(launch->arguments), "the arguments are the text's end");
        const std::string again = "1 \"x\" \"" + launch->program + "\" " + launch->arguments;
        const auto second = readQuotedLaunch(again);
        mustHold(
            second && second->program == launch->program && second->arguments == launch->arguments,
            "what was read reads the same");
    }
    IpcMessage record{};
    std::memcpy(record.text, data, std::min(size, sizeof record.text));
    for (const char* delimiters : {"\n", " \t"}) {
        for (const std::string& token : tokensOf(takeText(record), delimiters)) {
            mustHold(token.find('"') == token.npos, "quotes are taken off");
        }
    }
    return 0;
}
