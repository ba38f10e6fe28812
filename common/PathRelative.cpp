// A path as seen from a directory.
#include <algorithm>

#include "common/CaseBlind.h"
#include "common/PathName.h"
#include "common/PathText.h"
#include "platform/files/paths.h"

namespace juntora {
namespace {

constexpr int DIRECTORY_CAPACITY = 1024;
constexpr std::size_t DRIVE_LENGTH = 2;
constexpr char BASE_ITSELF[] = ".";

/// How many characters of two texts are the same in front, whatever their case.
std::size_t countCommon(std::string_view left, std::string_view right) {
    const auto end = std::mismatch(left.begin(), left.end(), right.begin(), right.end(),
                                   [](char a, char b) { return foldCase(a) == foldCase(b); });
    return static_cast<std::size_t>(end.first - left.begin());
}

/// Server and share, or the drive, or nothing: where a way up has to end.
std::string rootOf(const PathName& path) {
    CString root;
    if (path.isUnc()) {
        path.getUncRoot(root);
    } else {
        path.getDrive(root);
    }
    return static_cast<const char*>(root);
}

int countRootComponents(const PathName& path) {
    return path.isUnc() ? 2 : (rootOf(path).empty() ? 0 : 1);
}

/// Leaves in each what lies behind the components that are equal in both.
void skipCommon(PathComponents& left, PathComponents& right) {
    PathComponents behindLeft = left;
    PathComponents behindRight = right;
    while (!left.areAtEnd() && !right.areAtEnd() && behindLeft.next() == behindRight.next()) {
        left = behindLeft;
        right = behindRight;
    }
}

CString throughCommonParent(const PathName& path, const PathName& base) {
    if (!equalCaseBlind(rootOf(path), rootOf(base))) {
        return path.getPath();
    }
    PathComponents down(path.c_str());
    PathComponents up(base.c_str());
    down.skip(countRootComponents(path));
    up.skip(countRootComponents(path));
    skipCommon(down, up);

    std::string relative;
    for (; !up.areAtEnd(); up.next()) {
        relative += "..\\";
    }
    std::string_view rest = down.rest();
    rest.remove_suffix(rest.ends_with('\\') ? 1 : 0);
    relative += rest;
    return relative.empty() ? CString(BASE_ITSELF) : CString(std::move(relative));
}

}  // namespace

CString PathName::makeRelative(const char* base, bool allowUp) const {
    char current[DIRECTORY_CAPACITY];
    if (base == nullptr) {
        base = CurrentDirectory(current, sizeof current);
    }
    const std::string_view path = text();
    const std::string_view from = base == nullptr ? "" : base;
    const std::size_t common = countCommon(path, from);
    if (!path.empty() && common == from.size() && common == path.size()) {
        return BASE_ITSELF;
    }
    if (common == from.size() && path.substr(common).starts_with('\\')) {
        return copyOf(path.substr(common + 1));
    }
    if (common == 0) {
        return m_strPath;
    }
    if (allowUp) {
        return throughCommonParent(*this, PathName(base));
    }
    const bool isSameDrive = common >= DRIVE_LENGTH && path[1] == ':';
    return isSameDrive ? copyOf(path.substr(DRIVE_LENGTH)) : m_strPath;
}

}  // namespace juntora
