// What a path consists of.
#include "common/PathName.h"
#include "common/PathText.h"

namespace juntora {
namespace {

std::string joined(std::string_view first, std::string_view second) {
    return std::string(first).append(second);
}

bool isLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

}  // namespace

bool PathName::isUnc() const { return isUncPath(text()); }

void PathName::getExtension(CString& out, bool keepDot) const {
    std::string_view extension = splitPath(text()).extension;
    if (!keepDot && !extension.empty()) {
        extension.remove_prefix(1);
    }
    out = copyOf(extension);
}

void PathName::getBaseName(CString& out) const { out = copyOf(splitPath(text()).baseName); }

void PathName::getFileName(CString& out) const {
    const PathParts parts = splitPath(text());
    out = CString(joined(parts.baseName, parts.extension));
}

void PathName::getDirectory(CString& out) const {
    const PathParts parts = splitPath(text());
    out = CString(joined(parts.drive, parts.directory));
}

void PathName::getDirOnly(CString& out) const { out = copyOf(splitPath(text()).directory); }

void PathName::getDrive(CString& out) const { out = copyOf(splitPath(text()).drive); }

void PathName::getStem(CString& out) const {
    const PathParts parts = splitPath(text());
    out = CString(joined(parts.drive, parts.directory).append(parts.baseName));
}

void PathName::getParent(PathName& out) const {
    CString directory;
    getDirectory(directory);
    const std::string_view text(directory, static_cast<std::size_t>(directory.GetLength()));
    out.m_strPath = copyOf(text.substr(0, text.size() - (text.ends_with('\\') ? 1 : 0)));
    out.m_strEntered = std::move(directory);
}

void PathName::getComponent(CString& out, int index) const {
    PathComponents components(text());
    components.skip(index);
    out = index < 0 ? CString() : copyOf(components.next());
}

void PathName::getUncRoot(CString& out) const {
    std::string root;
    if (isUnc()) {
        PathComponents components(text());
        root.append("\\\\").append(components.next());
        root.append("\\").append(components.next());
    }
    out = CString(std::move(root));
}

int PathName::extensionPosition() const {
    const std::size_t extension = splitPath(text()).extension.size();
    return extension == 0 ? -1 : length() - static_cast<int>(extension);
}

int PathName::hasDriveLetter() const {
    if (isEmpty() || isUnc()) {
        return -1;
    }
    const std::string_view drive = splitPath(text()).drive;
    return !drive.empty() && isLetter(drive.front()) ? 1 : 0;
}

}  // namespace juntora
