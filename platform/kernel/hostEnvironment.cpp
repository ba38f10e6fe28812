#include "platform/kernel/hostEnvironment.h"

#include <cstdlib>

namespace juntora::kernel {

std::string hostEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string userFolder(const char* variable, const char* below) {
    std::string folder = hostEnvironment(variable);
    if (folder.starts_with('/')) {
        return folder;
    }
    const std::string home = hostEnvironment("HOME");
    return home.starts_with('/') ? home + below : "";
}

std::string userDataFolder() { return userFolder("XDG_DATA_HOME", "/.local/share"); }

}  // namespace juntora::kernel
