#include "shell/CommandLine.h"

#include <cstring>
#include <string_view>

#include "common/CaseBlind.h"

namespace juntora {

bool RemoveSwitch(char* line, const char* name) {
    const std::string_view wanted = name;
    for (char* at = line; *at != '\0'; ++at) {
        if ((*at == '-' || *at == '/') &&
            equalCaseBlind(std::string_view(at + 1).substr(0, wanted.size()), wanted)) {
            const char* rest = at + 1 + wanted.size();
            std::memmove(at, rest, std::strlen(rest) + 1);
            return true;
        }
    }
    return false;
}

}  // namespace juntora
