#include "platform/files/NamedFolder.h"

#include "platform/files/HostPath.h"
#include "platform/kernel/process.h"

namespace juntora::files {

std::string namedFolder(const char* variable) {
    const char* named = GetEnvironment(variable);
    std::string folder = named ? hostPath(named) : "";
    while (folder.size() > 1 && folder.ends_with('/')) {
        folder.pop_back();
    }
    return folder;
}

}  // namespace juntora::files
