#include "platform/files/DriveLinks.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <string_view>
#include <utility>
#include <vector>

#include <climits>

#include "platform/files/CaseFolding.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/hostEnvironment.h"

namespace juntora::files {
namespace {

constexpr std::size_t LINK_NAME_LENGTH = 2;
constexpr std::time_t SETTLING_SECONDS = 1;
constexpr std::int64_t LOOK_AGAIN_MILLISECONDS = 100;

/// The folder of the links with a trailing slash; empty for a user without a place for settings.
std::string linksFolder() {
    const std::string configuration = kernel::userFolder("XDG_CONFIG_HOME", "/.config");
    return configuration.empty() ? configuration : configuration + "/juntora/drives/";
}

bool isLinkName(std::string_view name) {
    return name.size() == LINK_NAME_LENGTH && name[0] >= 'd' && name[0] <= 'z' && name[1] == ':';
}

struct DriveLink {
    char drive;          ///< 'D' to 'Z'.
    std::string target;  ///< Where it leads, without links.
};

std::vector<DriveLink> readLinks(const std::string& folder) {
    std::vector<DriveLink> links;
    DIR* entries = opendir(folder.c_str());
    while (const dirent* entry = entries == nullptr ? nullptr : readdir(entries)) {
        const std::string target =
            isLinkName(entry->d_name) ? resolved(folder + entry->d_name) : "";
        if (!target.empty()) {
            links.push_back({static_cast<char>(entry->d_name[0] - 'a' + 'A'), target});
        }
    }
    if (entries != nullptr) {
        closedir(entries);
    }
    // Of two that lead to one place the first letter counts.
    std::sort(links.begin(), links.end(),
              [](const DriveLink& a, const DriveLink& b) { return a.drive < b.drive; });
    return links;
}

struct SeenLinks {
    std::int64_t lookedAt = 0;
    std::string folder;
    struct timespec changed {};
    ino_t number = 0;
    std::vector<DriveLink> links;
};

/// Reads the links anew where their folder has changed.
void refresh(SeenLinks& seen) {
    std::string folder = linksFolder();
    struct stat state {};
    if (folder.empty() || stat(folder.c_str(), &state) != 0) {
        seen = {};
    } else if (folder != seen.folder || state.st_ino != seen.number ||
               state.st_mtim.tv_sec != seen.changed.tv_sec ||
               state.st_mtim.tv_nsec != seen.changed.tv_nsec) {
        std::vector<DriveLink> links = readLinks(folder);
        // The clock of the file system is coarse: what changed just now may change once more
        // without a new time.
        const bool isSettled = state.st_mtim.tv_sec + SETTLING_SECONDS < std::time(nullptr);
        seen = {0, std::move(folder), state.st_mtim, isSettled ? state.st_ino : 0,
                std::move(links)};
    }
}

/// A clock that is read without a system call.
std::int64_t coarseMilliseconds() {
    struct timespec now {};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

/// Every relative path asks for the links, so that they are not looked at each time.
const std::vector<DriveLink>& driveLinks() {
    thread_local SeenLinks seen;
    const std::int64_t now = coarseMilliseconds();
    if (seen.lookedAt == 0 || now - seen.lookedAt >= LOOK_AGAIN_MILLISECONDS) {
        refresh(seen);
        seen.lookedAt = now;
    }
    return seen.links;
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
    const DriveLink* nearest = nullptr;
    for (const DriveLink& link : driveLinks()) {
        const bool isNearer = nearest == nullptr || link.target.size() > nearest->target.size();
        if (isNearer && isAtOrBelow(path, link.target)) {
            nearest = &link;
        }
    }
    const bool isOnLink = nearest != nullptr && nearest->target != "/";
    const std::string below = path.substr(isOnLink ? nearest->target.size() : 0);
    return std::string{isOnLink ? nearest->drive : 'C', ':'} +
           (below.empty() ? "\\" : withBackslashes(below));
}

std::string resolved(const std::string& path) {
    char target[PATH_MAX];
    return realpath(path.c_str(), target) == nullptr ? "" : target;
}

}  // namespace juntora::files
