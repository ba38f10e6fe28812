// Paths for a person's eyes.
#include <algorithm>
#include <cstdint>

#include "common/PathName.h"
#include "common/PathText.h"
#include "platform/files/paths.h"

namespace juntora {
namespace {

constexpr std::string_view CUT = "...";
constexpr int TITLE_CAPACITY = 260;
constexpr int SHORTEST_TITLE = 8;
constexpr int SHORTEST_FILE_NAME = 5;
constexpr std::size_t NONE = std::string_view::npos;

/// Index at which the root ends; NONE if the path has no place where it could be cut.
std::size_t rootEnd(std::string_view path) {
    const std::string_view drive = splitPath(path).drive;
    return drive.empty() ? path.find('\\', isUncPath(path) ? 2 : 0) : drive.size();
}

/// Keeps the one of the result's length and the length that it would need.
CString cutResult(std::string result, std::int64_t need, int* length) {
    *length = static_cast<int>(result.empty() ? -need : static_cast<std::int64_t>(result.size()));
    return CString(std::move(result));
}

/// The root and as much of the file name as fits, for a path of which the file name alone is too
/// long.
CString abbreviateFileName(std::string_view path, std::size_t root, int maxLength, int* length) {
    const PathParts parts = splitPath(path);
    const std::size_t nameLength = parts.baseName.size() + parts.extension.size();
    const std::size_t frame = root + 1 + CUT.size() + 1 + CUT.size();
    const std::size_t need = frame + std::min<std::size_t>(SHORTEST_FILE_NAME, nameLength);
    std::string result;
    if (maxLength >= static_cast<std::int64_t>(need)) {
        result.append(path.substr(0, root + 1)).append(CUT).append("\\");
        result.append(path.substr(path.size() - nameLength, maxLength - frame)).append(CUT);
    }
    return cutResult(std::move(result), static_cast<std::int64_t>(need), length);
}

CString titleOf(const CString& fileName) {
    char title[TITLE_CAPACITY];
    return GetFileTitleA(fileName, title, sizeof title) == 0 ? CString(title) : fileName;
}

/// A title in at most `maxLength` characters.
CString cutTitle(CString title, bool limited, int maxLength, int* length) {
    *length = title.GetLength();
    if (!limited || *length <= maxLength) {
        return title;
    }
    if (maxLength < SHORTEST_TITLE) {
        *length = -SHORTEST_TITLE;
        return title;
    }
    *length = maxLength;
    const auto kept = static_cast<std::size_t>(maxLength) - CUT.size();
    return CString(std::string(title, kept).append(CUT));
}

}  // namespace

CString PathName::abbreviate(int maxLength, int* length) const {
    if (length == nullptr) {
        return CString();
    }
    *length = 0;
    if (maxLength == 0 || isEmpty()) {
        return CString();
    }
    *length = this->length();
    if (*length <= maxLength) {
        return m_strPath;
    }
    const std::string_view path = text();
    const std::size_t root = rootEnd(path);
    if (root == NONE) {
        return cutResult({}, *length, length);
    }
    // With the root and the dots in front, no more than what begins here fits.
    const std::int64_t tooLong = static_cast<std::int64_t>(path.size()) - maxLength;
    const std::int64_t start = static_cast<std::int64_t>(root + 1 + CUT.size()) + tooLong;
    if (start >= static_cast<std::int64_t>(path.size())) {
        const std::size_t last = path.substr(0, path.size() - 1).rfind('\\');
        const std::size_t kept = last == NONE ? root : std::max(root, last);
        return cutResult({}, root + 1 + CUT.size() + path.size() - kept, length);
    }
    const std::size_t kept = path.find('\\', static_cast<std::size_t>(start));
    if (kept == NONE) {
        return abbreviateFileName(path, root, maxLength, length);
    }
    std::string result(path.substr(0, root + 1));
    return cutResult(result.append(CUT).append(path.substr(kept)), 0, length);
}

CString PathName::getDisplayName(bool withDirectory, bool limited, int maxLength,
                                 int* length) const {
    int unasked = 0;
    int* const told = length == nullptr ? &unasked : length;
    *told = 0;
    if (isEmpty()) {
        return CString();
    }
    CString fileName;
    getFileName(fileName);
    CString title = titleOf(fileName);
    if (!withDirectory) {
        return cutTitle(std::move(title), limited, maxLength, told);
    }
    CString directory;
    getDirectory(directory);
    CString whole(std::string(directory).append(title));
    if (limited) {
        return PathName(std::move(whole)).abbreviate(maxLength, length);
    }
    *told = whole.GetLength();
    return whole;
}

}  // namespace juntora
