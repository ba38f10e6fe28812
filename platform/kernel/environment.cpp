// The environment, with names without regard to case and the search path in the platform's form.
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/files/CaseFolding.h"
#include "platform/kernel/SearchPath.h"
#include "platform/kernel/process.h"

namespace juntora {
namespace {

constexpr char SEARCH_PATH[] = "PATH";

bool hasName(const char* entry, std::string_view name) {
    for (const char c : name) {
        if (files::foldCase(*entry) != files::foldCase(c)) {
            return false;
        }
        ++entry;
    }
    return *entry == '=';
}

/// The variable's entry, "NAME=VALUE", in the very spelling if that is there; null if there is
/// none. In one pass: libraries ask at every turn for words that are not there.
const char* entryOf(std::string_view name) {
    const char* similar = nullptr;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (hasName(*entry, name)) {
            if (std::string_view(*entry).starts_with(name)) {
                return *entry;
            }
            similar = similar == nullptr ? *entry : similar;
        }
    }
    return similar;
}

/// A value of the search path for the caller, which may hold it for as long as it holds others.
const char* ownPathText() {
    static std::string text;
    const char* value = std::getenv(SEARCH_PATH);
    text = kernel::platformSearchPath(value == nullptr ? "" : value);
    return value == nullptr ? nullptr : text.c_str();
}

}  // namespace

const char* GetEnvironment(const char* name) {
    if (files::equalIgnoringCase(name, SEARCH_PATH)) {
        return ownPathText();
    }
    const std::size_t length = std::strlen(name);
    const bool canBeName = length != 0 && std::strchr(name, '=') == nullptr;
    const char* entry = canBeName ? entryOf({name, length}) : nullptr;
    return entry == nullptr ? nullptr : entry + length + 1;
}

int PutEnvironment(const char* assignment) {
    const char* equals = std::strchr(assignment, '=');
    if (equals == nullptr || equals == assignment) {
        return -1;
    }
    std::string name(assignment, static_cast<std::size_t>(equals - assignment));
    std::string value = equals + 1;
    if (files::equalIgnoringCase(name, SEARCH_PATH)) {
        name = SEARCH_PATH;
        value = kernel::hostSearchPath(value);
    }
    if (equals[1] != '\0' && value.empty()) {
        return -1;  // No folder of the list is there, and without any no program would be found.
    }
    if (value.empty()) {
        while (const char* entry = entryOf(name)) {
            unsetenv(std::string(entry, name.size()).c_str());
        }
        return 0;
    }
    if (const char* entry = entryOf(name)) {
        name.assign(entry, name.size());
    }
    return setenv(name.c_str(), value.c_str(), 1) == 0 ? 0 : -1;
}

}  // namespace juntora
