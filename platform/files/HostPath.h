// Where the platform's paths lie on this machine.
//
// "C:\a\b" and "/a/b" are one, and so are relative paths with either separator. Another drive is a
// link (DriveLinks.h), and a path to a server leads to where its share is mounted (MountTable.h).
#pragma once

#include <sys/stat.h>

#include <string>
#include <string_view>

#include "platform/types.h"

namespace juntora::files {

/// The Linux path of a path, in its exact spelling. Empty if there is no such drive or share.
std::string hostPath(std::string_view path);

struct Located {
    std::string path;    ///< The Linux path; empty if there is no such drive or share.
    DWORD error;         ///< 0: it is there.
    bool isRoot;         ///< The path is a drive's or a share's root.
    struct statx state;  ///< Of what is there, links followed.
};

/// The Linux path of a path as the folders spell it. The exact spelling wins at each component,
/// then that which differs in the case of A to Z alone. ERROR_FILE_NOT_FOUND says that the last
/// component is nowhere and can be made: it stays as written. ERROR_PATH_NOT_FOUND and others say
/// that it can't. Costs one system call where the exact spelling is there.
Located locate(std::string_view path);

}  // namespace juntora::files
