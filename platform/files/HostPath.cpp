#include "platform/files/HostPath.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "platform/files/CaseFolding.h"
#include "platform/files/DriveLinks.h"
#include "platform/files/FullPath.h"
#include "platform/files/MountTable.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/SystemError.h"
#include "platform/messages.h"

namespace juntora::files {
namespace {

/// A Linux path of which the root is taken as it is and the rest may be spelled in another case.
struct Place {
    std::string root;  ///< Ends in a slash, or is empty.
    std::string rest;
    DWORD error = 0;
};

Place missing(DWORD error) { return {"", "", error}; }

Place placeOnShare(std::string_view path) {
    const std::string unc = fullPath(path);
    const std::optional<MountTable> mounts = MountTable::read();
    const Mount* mount = mounts ? mounts->named(unc) : nullptr;
    if (mount == nullptr) {
        return missing(ERROR_BAD_NETPATH);
    }
    return {mount->point + "/", withSlashes(unc.substr(mount->remote.size()))};
}

Place placeOnDrive(std::string_view path) {
    std::string root = driveRoot(path[0]);
    const std::string_view rest = path.substr(2);
    if (root.empty()) {
        return missing(ERROR_PATH_NOT_FOUND);
    }
    if (!startsWithSeparator(rest) &&
        equalIgnoringCase(currentFolder().substr(0, 2), path.substr(0, 2))) {
        root = ".";
    }
    return {root == "/" ? root : root + "/", withSlashes(std::string(rest))};
}

Place placeOf(std::string_view path) {
    if (path.empty()) {
        return missing(ERROR_PATH_NOT_FOUND);
    }
    Place place;
    if (isUnc(path)) {
        place = placeOnShare(path);
    } else if (hasDrive(path)) {
        place = placeOnDrive(path);
    } else {
        place = {startsWithSeparator(path) ? "/" : "", withSlashes(std::string(path))};
    }
    if (!place.root.empty()) {
        place.rest.erase(0, place.rest.find_first_not_of('/'));
    }
    return place;
}

/// 0, or the errno.
int readState(const std::string& path, struct statx* state) {
    constexpr unsigned NEEDED = STATX_BASIC_STATS | STATX_BTIME;
    return statx(AT_FDCWD, path.c_str(), 0, NEEDED, state) == 0 ? 0 : errno;
}

bool isMissing(int error) { return error == ENOENT || error == ENOTDIR; }

/// The folder's entry that is `name` but for case. Of several the first in the order of bytes, so
/// that it doesn't depend on the file system's order.
DWORD findEntry(const std::string& folder, std::string_view name, std::string* entry) {
    DIR* listing = opendir(folder.empty() ? "." : folder.c_str());
    if (listing == nullptr) {
        return isMissing(errno) ? ERROR_PATH_NOT_FOUND : kernel::errorOf(errno);
    }
    entry->clear();
    while (const dirent* found = readdir(listing)) {
        if (found->d_name == name) {
            *entry = name;
            break;
        }
        if (equalIgnoringCase(found->d_name, name) && (entry->empty() || found->d_name < *entry)) {
            *entry = found->d_name;
        }
    }
    closedir(listing);
    return entry->empty() ? ERROR_FILE_NOT_FOUND : 0;
}

/// How much of a path that is not there is there, in whole components: at least the root.
std::size_t existingLength(const std::string& path, std::size_t root) {
    std::size_t end = path.find_last_not_of('/') + 1;
    while (end > root) {
        const std::size_t slash = path.rfind('/', end - 1);
        if (slash == std::string::npos || slash <= root) {
            break;
        }
        end = slash;
        struct statx state {};
        if (readState(path.substr(0, end), &state) == 0) {
            return end;
        }
    }
    return root;
}

/// Puts the folders' own spelling into a path that is not there as it is written.
DWORD respell(std::string* path, std::size_t root) {
    std::size_t at = existingLength(*path, root);
    for (;;) {
        const std::size_t start = path->find_first_not_of('/', at);
        if (start == std::string::npos) {
            return at == root ? ERROR_PATH_NOT_FOUND : 0;
        }
        const std::size_t end = std::min(path->find('/', start), path->size());
        std::string entry;
        const DWORD error =
            findEntry(path->substr(0, start), path->substr(start, end - start), &entry);
        if (error != 0) {
            const bool isLast = path->find_first_not_of('/', end) == std::string::npos;
            return error == ERROR_FILE_NOT_FOUND && !isLast ? ERROR_PATH_NOT_FOUND : error;
        }
        path->replace(start, end - start, entry);
        at = end;
    }
}

}  // namespace

std::string hostPath(std::string_view path) {
    const Place place = placeOf(path);
    return place.root + place.rest;
}

Located locate(std::string_view path) {
    const Place place = placeOf(path);
    Located located{place.root + place.rest, place.error, false, {}};
    if (located.error != 0) {
        return located;
    }
    located.isRoot = place.rest.empty();
    int error = readState(located.path, &located.state);
    if (isMissing(error)) {
        located.error = respell(&located.path, place.root.size());
        if (located.error != 0) {
            return located;
        }
        error = readState(located.path, &located.state);
    }
    located.error = kernel::errorOf(error);
    return located;
}

}  // namespace juntora::files
