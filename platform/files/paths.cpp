// Taking paths apart.
#include "platform/files/paths.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>

namespace juntora {
namespace {

constexpr std::size_t FIELD = 256;

void put(char* field, std::string_view text) {
    if (field != nullptr) {
        const std::size_t length = std::min(text.size(), FIELD - 1);
        std::copy_n(text.begin(), length, field);
        field[length] = '\0';
    }
}

}  // namespace

void SplitPath(const char* path, char* drive, char* directory, char* name, char* extension) {
    std::string_view rest(path);
    const bool hasDrive = rest.size() >= 2 && rest[1] == ':';
    put(drive, hasDrive ? rest.substr(0, 2) : std::string_view{});
    rest.remove_prefix(hasDrive ? 2 : 0);
    const std::size_t separator = rest.find_last_of("/\\");
    const std::size_t start = separator == std::string_view::npos ? 0 : separator + 1;
    put(directory, rest.substr(0, start));
    rest.remove_prefix(start);
    const std::size_t dot = std::min(rest.rfind('.'), rest.size());
    put(name, rest.substr(0, dot));
    put(extension, rest.substr(dot));
}

char* CurrentDirectory(char* buffer, int capacity) {
    return capacity <= 0 ? nullptr : getcwd(buffer, static_cast<std::size_t>(capacity));
}

}  // namespace juntora
