#include "platform/files/MountTable.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "platform/files/CaseFolding.h"
#include "platform/files/PathSyntax.h"

namespace juntora::files {
namespace {

constexpr std::array NETWORK_TYPES{"cifs", "smb3", "nfs", "nfs4", "9p", "fuse.sshfs"};
constexpr std::size_t ESCAPE_LENGTH = 4;

bool isOctal(std::string_view digits) {
    return digits.size() == ESCAPE_LENGTH - 1 &&
           std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '7'; });
}

/// Blanks, line ends and backslashes stand in the table as "\040", in octal.
std::string unescaped(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        std::size_t taken = 1;
        char c = text.front();
        if (c == '\\' && isOctal(text.substr(1, ESCAPE_LENGTH - 1))) {
            c = static_cast<char>((text[1] - '0') * 64 + (text[2] - '0') * 8 + (text[3] - '0'));
            taken = ESCAPE_LENGTH;
        }
        plain += c;
        text.remove_prefix(taken);
    }
    return plain;
}

/// The remote name of "//server/share" or "server:/path", with what of it is mounted; empty for a
/// source of another form.
std::string remoteName(const std::string& type, std::string source, const std::string& mounted) {
    if (std::find(NETWORK_TYPES.begin(), NETWORK_TYPES.end(), type) == NETWORK_TYPES.end()) {
        return "";
    }
    if (!source.starts_with("//")) {
        const std::size_t colon = source.find(":/");
        if (colon == 0 || colon == std::string::npos) {
            return "";
        }
        source = "//" + source.erase(colon, 1);
    }
    source += mounted;
    source.erase(source.find_last_not_of('/') + 1);
    return withBackslashes(source);
}

/// "36 35 98:0 /folder/mounted /mount/point options [more…] - type source options"
std::optional<Mount> parse(const std::string& line) {
    std::istringstream words(line);
    std::string word;
    std::string mounted;
    Mount mount;
    words >> word >> word >> word >> mounted >> mount.point;
    while (words >> word && word != "-") {
    }
    std::string source;
    if (!(words >> mount.type >> source)) {
        return {};
    }
    mount.point = unescaped(mount.point);
    mount.remote = remoteName(mount.type, unescaped(source), unescaped(mounted));
    return mount;
}

bool startsWithName(std::string_view unc, std::string_view remote) {
    return unc.size() >= remote.size() && equalIgnoringCase(unc.substr(0, remote.size()), remote) &&
           (unc.size() == remote.size() || unc[remote.size()] == '\\');
}

}  // namespace

std::optional<MountTable> MountTable::read() {
    const char* named = std::getenv("JUNTORA_MOUNTS");
    std::ifstream file(named != nullptr && *named != '\0' ? named : "/proc/self/mountinfo");
    if (!file) {
        return {};
    }
    MountTable table;
    for (std::string line; std::getline(file, line);) {
        if (std::optional<Mount> mount = parse(line)) {
            table.m_mounts.push_back(std::move(*mount));
        }
    }
    return table;
}

// In both searches a later mount hides an earlier one at the same place.

const Mount* MountTable::holding(std::string_view path) const {
    const Mount* nearest = nullptr;
    for (const Mount& mount : m_mounts) {
        if (isAtOrBelow(path, mount.point) &&
            (nearest == nullptr || mount.point.size() >= nearest->point.size())) {
            nearest = &mount;
        }
    }
    return nearest;
}

const Mount* MountTable::named(std::string_view unc) const {
    const Mount* nearest = nullptr;
    for (const Mount& mount : m_mounts) {
        if (!mount.remote.empty() && startsWithName(unc, mount.remote) &&
            (nearest == nullptr || mount.remote.size() >= nearest->remote.size())) {
            nearest = &mount;
        }
    }
    return nearest;
}

}  // namespace juntora::files
