#include "platform/files/drives.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/files/DriveLinks.h"
#include "platform/files/HostPath.h"
#include "platform/files/MountTable.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/SystemError.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

using files::MountTable;

/// File systems that the platform has too. A block device behind a user's process is one of its
/// own in practice.
constexpr std::pair<std::string_view, std::string_view> PLATFORM_NAMES[] = {
    {"msdos", "FAT"},  {"vfat", "FAT32"},   {"ntfs", "NTFS"},
    {"ntfs3", "NTFS"}, {"fuseblk", "NTFS"}, {"hpfs", "HPFS"}};

bool isDriveName(std::string_view name) {
    return name.size() == 2 && files::hasDrive(name) &&
           std::isalpha(static_cast<unsigned char>(name[0])) != 0;
}

bool isThere(const std::string& link) {
    struct stat state {};
    return lstat(link.c_str(), &state) == 0;
}

/// "EXT4" of "ext4", "FUSE" of "fuse.name".
std::string fileSystemName(std::string_view type) {
    for (const auto& [system, platform] : PLATFORM_NAMES) {
        if (system == type) {
            return std::string(platform);
        }
    }
    std::string name(type.substr(0, type.find('.')));
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return name;
}

bool isVolumeRoot(std::string_view root) {
    return files::endsInSeparator(root) &&
           (files::isUnc(root) || isDriveName(root.substr(0, root.size() - 1)));
}

BOOL fail(DWORD error) {
    SetLastError(error);
    return 0;
}

}  // namespace

DWORD WNetGetConnectionA(const char* drive, char* remote, DWORD* capacity) {
    if (drive == nullptr || remote == nullptr || capacity == nullptr) {
        return ERROR_INVALID_ADDRESS;
    }
    if (!isDriveName(drive)) {
        return ERROR_BAD_DEVICE;
    }
    const std::string root = files::driveRoot(*drive);
    if (root.empty() || !isThere(root)) {
        return ERROR_NOT_CONNECTED;
    }
    const std::string target = files::resolved(root);
    if (target.empty()) {
        return ERROR_CONNECTION_UNAVAIL;
    }
    const std::optional<MountTable> mounts = MountTable::read();
    if (!mounts) {
        return ERROR_NO_NETWORK;
    }
    const files::Mount* mount = mounts->holding(target);
    if (mount == nullptr || mount->remote.empty()) {
        return ERROR_NOT_CONNECTED;
    }
    const std::string below = mount->point == "/" ? target : target.substr(mount->point.size());
    const std::string name = mount->remote + (below == "/" ? "" : files::withBackslashes(below));
    if (name.size() >= *capacity) {
        *capacity = static_cast<DWORD>(name.size() + 1);
        return ERROR_MORE_DATA;
    }
    std::memcpy(remote, name.c_str(), name.size() + 1);
    return ERROR_SUCCESS;
}

BOOL GetVolumeInformationA(const char* root, DWORD* maxComponent, char* fileSystem,
                           DWORD capacity) {
    if (root == nullptr || !isVolumeRoot(root)) {
        return fail(ERROR_INVALID_NAME);
    }
    const files::Located place = files::locate(root);
    if (place.error != 0) {
        return fail(place.error);
    }
    struct statvfs volume {};
    if (statvfs(place.path.c_str(), &volume) != 0) {
        return fail(kernel::errorOf(errno));
    }
    if (maxComponent != nullptr) {
        *maxComponent = static_cast<DWORD>(volume.f_namemax);
    }
    if (fileSystem == nullptr) {
        return 1;
    }
    const std::optional<MountTable> mounts = MountTable::read();
    const files::Mount* mount = mounts ? mounts->holding(files::resolved(place.path)) : nullptr;
    const std::string name = fileSystemName(mount == nullptr ? "" : mount->type);
    if (name.size() >= capacity) {
        return fail(ERROR_MORE_DATA);
    }
    std::memcpy(fileSystem, name.c_str(), name.size() + 1);
    return 1;
}

}  // namespace juntora
