// What is mounted where.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace juntora::files {

struct Mount {
    std::string point;   ///< A Linux path without links.
    std::string type;    ///< The file system's name.
    std::string remote;  ///< "\\server\share", maybe with folders; empty for a local one.
};

class MountTable {
public:
    /// Nothing if it cannot be read. Lines that are none of it are passed over.
    static std::optional<MountTable> read();

    /// The mount that a Linux path without links lies on; null if the table is empty.
    const Mount* holding(std::string_view path) const;
    /// The mount whose remote name a path to a server starts with, without regard to case. The path
    /// has backslashes alone.
    const Mount* named(std::string_view unc) const;

private:
    std::vector<Mount> m_mounts;
};

}  // namespace juntora::files
