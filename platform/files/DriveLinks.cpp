#include "platform/files/DriveLinks.h"

#include <dirent.h>

#include <cstdlib>
#include <string_view>

#include <climits>

#include "platform/files/CaseFolding.h"
#include "platform/files/PathSyntax.h"

namespace juntora::files {
namespace {

constexpr std::size_t LINK_NAME_LENGTH = 2;

/// The folder of the links with a trailing slash; empty for a user without a place for settings.
std::string linksFolder() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config != nullptr && *config == '/') {
        return std::string(config) + "/juntora/drives/";
    }
    const char* home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.config/juntora/drives/" : "";
}

bool isLinkName(std::string_view name) {
    return name.size() == LINK_NAME_LENGTH && name[0] >= 'd' && name[0] <= 'z' && name[1] == ':';
}

}  // namespace

std::string driveRoot(char letter) {
    const std::string name{foldCase(letter), ':'};
    if (name == "c:") {
        return "/";
    }
    const std::string folder = isLinkName(name) ? linksFolder() : "";
    return folder.empty() ? "" : folder + name;
}

std::string platformPath(const std::string& path) {
    char letter = 'c';
    std::string nearest = "/";
    const std::string folder = linksFolder();
    DIR* links = folder.empty() ? nullptr : opendir(folder.c_str());
    while (const dirent* link = links == nullptr ? nullptr : readdir(links)) {
        if (!isLinkName(link->d_name)) {
            continue;
        }
        const std::string target = resolved(folder + link->d_name);
        const bool isNearer =
            target.size() > nearest.size() || (target == nearest && link->d_name[0] < letter);
        if (!target.empty() && isNearer && isAtOrBelow(path, target)) {
            letter = link->d_name[0];
            nearest = target;
        }
    }
    if (links != nullptr) {
        closedir(links);
    }
    const std::string below = path.substr(nearest == "/" ? 0 : nearest.size());
    return std::string{static_cast<char>(letter - 'a' + 'A'), ':'} +
           (below.empty() ? "\\" : withBackslashes(below));
}

std::string resolved(const std::string& path) {
    char target[PATH_MAX];
    return realpath(path.c_str(), target) == nullptr ? "" : target;
}

}  // namespace juntora::files
