#include "messages/messageHelp.h"

#include <cstdlib>
#include <string_view>

#include "messages/messageFamily.h"
#include "platform/files/shell.h"
#include "platform/files/temporaryFiles.h"
#include "platform/files/wholeFile.h"
#include "platform/messages.h"

namespace juntora {

int showMessageHelp(const char* module, unsigned long number) {
    std::string help;
    if (getMessageHelp(&help, module, number) != 0 || help.empty()) {
        return 1;
    }
    char folder[1024];
    char path[260] = "";
    // Nobody is told of a failure: help is a courtesy.
    if (GetTempPathA(sizeof folder, folder) != 0 &&
        GetTempFileNameA(folder, "message", path, ".html") != 0 &&
        WriteWholeFile(path, help.data(), help.size())) {
        ShellExecuteA(0, "open", path, nullptr, nullptr, SW_SHOWNORMAL);
    }
    return 0;
}

int showMessageHelpForText(const char* text) {
    std::string module;
    int number = 0;
    return parseMessageKey(text, &module, &number) != 0
               ? 1
               : showMessageHelp(module.c_str(), static_cast<unsigned>(number));
}

int parseMessageKey(const char* text, std::string* module, int* number) {
    const std::string_view whole(text ? text : "");
    const std::size_t open = whole.find('(');
    const std::size_t close = whole.find(')');
    const std::size_t dash = whole.find('-');
    if (open == std::string_view::npos || close == std::string_view::npos ||
        dash == std::string_view::npos || open > dash || dash > close) {
        return 1;
    }
    *module = whole.substr(open + 1, dash - open - 1);
    const std::string digits(whole.substr(dash + 1, close - dash - 1));
    *number = static_cast<int>(std::strtol(digits.c_str(), nullptr, 10));
    return 0;
}

}  // namespace juntora
