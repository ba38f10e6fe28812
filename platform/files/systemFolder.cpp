#include "platform/files/systemFolder.h"

#include <cstring>
#include <string>

#include "platform/files/FullPath.h"
#include "platform/files/NamedFolder.h"

namespace juntora {
namespace {

constexpr char SITE_VARIABLE[] = "JUNTORA_SITE";
constexpr char SITE_FOLDER[] = "/etc/juntora";

}  // namespace

std::string SiteFolder() {
    std::string named = files::namedFolder(SITE_VARIABLE);
    return named.empty() ? SITE_FOLDER : named;
}

UINT GetWindowsDirectoryA(char* buffer, UINT capacity) {
    const std::string folder = files::fullPath(SiteFolder());
    if (folder.size() >= capacity) {
        return static_cast<UINT>(folder.size() + 1);
    }
    std::memcpy(buffer, folder.c_str(), folder.size() + 1);
    return static_cast<UINT>(folder.size());
}

}  // namespace juntora
