#include "platform/files/FullPath.h"

#include <unistd.h>

#include <climits>

#include "platform/files/CaseFolding.h"
#include "platform/files/DriveLinks.h"
#include "platform/files/PathSyntax.h"

namespace juntora::files {
namespace {

/// Takes the next segment off the front of a path, and the separators before it.
std::string_view takeSegment(std::string_view* path) {
    path->remove_prefix(std::min(path->find_first_not_of(SEPARATORS), path->size()));
    const std::string_view segment = path->substr(0, path->find_first_of(SEPARATORS));
    path->remove_prefix(segment.size());
    return segment;
}

/// A path that grows by segments; each ends in a backslash, and so does the root, which stays.
class Climber {
public:
    explicit Climber(std::string root) : m_path(std::move(root)), m_rootLength(m_path.size()) {}

    void add(std::string_view path) {
        while (!path.empty()) {
            const std::string_view segment = takeSegment(&path);
            if (segment == "..") {
                dropLast();
            } else if (!segment.empty() && segment != ".") {
                m_path.append(segment) += '\\';
            }
        }
    }

    std::string path(bool withSeparator) && {
        if (!withSeparator && m_path.size() > m_rootLength) {
            m_path.pop_back();
        }
        return std::move(m_path);
    }

private:
    void dropLast() {
        if (m_path.size() > m_rootLength) {
            m_path.erase(m_path.rfind('\\', m_path.size() - 2) + 1);
        }
    }

    std::string m_path;
    std::size_t m_rootLength;
};

/// Server and share are names whatever they look like, dots included.
std::string fullUncPath(std::string_view path) {
    std::string root = "\\\\";
    root += takeSegment(&path);
    if (!path.empty()) {
        root += '\\';
        root += takeSegment(&path);
    }
    if (!path.empty() && root.back() != '\\') {
        root += '\\';
    }
    Climber climber(std::move(root));
    climber.add(path);
    return std::move(climber).path(endsInSeparator(path));
}

/// A path on a drive, "C:…", with the rest of another one behind it.
std::string below(std::string_view base, std::string_view rest, bool withSeparator) {
    Climber climber(std::string(base.substr(0, 2)) + '\\');
    climber.add(base.substr(2));
    climber.add(rest);
    return std::move(climber).path(withSeparator);
}

}  // namespace

std::string currentFolder() {
    char path[PATH_MAX];
    return getcwd(path, sizeof path) == nullptr ? "" : platformPath(path);
}

std::string fullPath(std::string_view path) {
    if (isUnc(path)) {
        return fullUncPath(path);
    }
    if (startsWithSeparator(path)) {
        return below("C:", path, endsInSeparator(path));
    }
    std::string_view drive;
    std::string_view rest = path;
    if (hasDrive(path)) {
        drive = path.substr(0, 2);
        rest = path.substr(2);
        if (startsWithSeparator(rest)) {
            return below(drive, rest, endsInSeparator(rest));
        }
    }
    const std::string current = currentFolder();
    if (current.empty()) {
        return "";
    }
    const bool isOnCurrent =
        drive.empty() || equalIgnoringCase(drive, std::string_view(current).substr(0, 2));
    return below(isOnCurrent ? std::string_view(current) : drive, rest, endsInSeparator(rest));
}

}  // namespace juntora::files
