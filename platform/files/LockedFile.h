// A file that is read, changed and put back as one step among all processes that do so.
#pragma once

#include <sys/stat.h>

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace juntora::files {

/// The lock is the system's, on the file itself: it goes with its holder, and leaves nothing
/// behind. A file that is replaced takes its lock along, so that who gets the lock of one that is
/// no longer in its place goes for that of the new one.
///
/// Writing replaces the file: who reads it sees the old one or the new one, whole. Rights stay, and
/// the owner where the system lets that be kept; other hard links stay with the old content. A link
/// stays a link: what it leads to is replaced.
class LockedFile {
public:
    static constexpr std::chrono::seconds PATIENCE{10};

    /// Locks the file that `path` leads to; error() tells whether it is so. A file that may not be
    /// written counts as ERROR_ACCESS_DENIED, whatever its folder would allow; one that somebody
    /// keeps locked for longer than PATIENCE as ERROR_LOCK_FAILED. With `canMake` a file that is
    /// not there is made, empty.
    LockedFile(const char* path, bool canMake);
    ~LockedFile();
    LockedFile(const LockedFile&) = delete;
    LockedFile& operator=(const LockedFile&) = delete;

    DWORD error() const { return m_error; }

    /// All of it; 0, or ERROR_FILE_TOO_LARGE beyond `limit`.
    DWORD read(std::size_t limit, std::string* bytes) const;
    /// Returns 0; on an error the file is what it was.
    DWORD replace(std::string_view bytes);

private:
    DWORD open(const char* name, bool canMake);
    DWORD lock() const;
    bool isAt(const std::string& path);

    std::string m_path;
    struct stat m_state {};
    int m_file = -1;
    DWORD m_error;
};

}  // namespace juntora::files
