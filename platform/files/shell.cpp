#include "platform/files/shell.h"

#include <cstdio>
#include <string>

#include "platform/files/HostPath.h"

namespace juntora {

bool SHGetFileInfoA(const char* path, char* displayName, int capacity) {
    files::Located file = files::locate(path);
    if (file.error != 0 || file.isRoot || capacity <= 0) {
        return false;
    }
    while (file.path.ends_with('/')) {
        file.path.pop_back();
    }
    const std::size_t start = file.path.rfind('/') + 1;
    std::snprintf(displayName, static_cast<std::size_t>(capacity), "%s", file.path.c_str() + start);
    return displayName[0] != '\0';
}

}  // namespace juntora
