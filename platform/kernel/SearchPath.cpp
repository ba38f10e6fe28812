#include "platform/kernel/SearchPath.h"

#include <algorithm>

#include "platform/files/CaseFolding.h"
#include "platform/files/DriveLinks.h"
#include "platform/files/HostPath.h"
#include "platform/files/PathSyntax.h"
#include "platform/files/paths.h"

namespace juntora::kernel {
namespace {

constexpr DWORD PATH_CAPACITY = 4096;

/// Each part of a list, turned by `turn`, with another separator. Empty parts go.
template <typename Turn>
std::string turnEach(std::string_view list, char from, char to, Turn turn) {
    std::string turned;
    while (!list.empty()) {
        const std::size_t length = std::min(list.find(from), list.size());
        const std::string part = turn(std::string(list.substr(0, length)));
        if (!part.empty()) {
            turned += (turned.empty() ? "" : std::string(1, to)) + part;
        }
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return turned;
}

/// Turns the folders of a list, and finds out whether any of them is there.
class HostFolders {
public:
    /// Without the link of a drive in it: its colon would part the list. Empty for what is not
    /// there and has one.
    std::string turn(const std::string& folder) {
        const files::Located located = files::locate(folder);
        if (located.error == 0) {
            m_isAnyThere = true;
            return files::resolved(located.path);
        }
        return located.path.find(':') == std::string::npos ? located.path : "";
    }
    bool isAnyThere() const { return m_isAnyThere; }

private:
    bool m_isAnyThere = false;
};

}  // namespace

std::string platformSearchPath(std::string_view hostForm) {
    return turnEach(hostForm, ':', ';', [](const std::string& folder) -> std::string {
        char full[PATH_CAPACITY];
        const DWORD length = GetFullPathNameA(folder.c_str(), sizeof full, full);
        return length > 0 && length < sizeof full ? full : "";
    });
}

std::string hostSearchPath(std::string_view platformForm) {
    const bool hasDrive = files::hasDrive(platformForm) &&
                          files::foldCase(platformForm[0]) >= 'a' &&
                          files::foldCase(platformForm[0]) <= 'z';
    const bool isHostForm =
        !hasDrive && platformForm.find_first_of(";\\") == std::string_view::npos;
    if (isHostForm) {
        return std::string(platformForm);
    }
    HostFolders folders;
    const std::string list = turnEach(
        platformForm, ';', ':', [&](const std::string& folder) { return folders.turn(folder); });
    return folders.isAnyThere() ? list : "";
}

}  // namespace juntora::kernel
