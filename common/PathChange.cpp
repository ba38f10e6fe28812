// Putting other parts into a path.
#include "common/PathName.h"
#include "common/PathText.h"

namespace juntora {

void PathName::setExtension(CString& old, const CString& ext) {
    const PathParts parts = splitPath(text());
    std::string changed(text().substr(0, text().size() - parts.extension.size()));
    if (!ext.IsEmpty()) {
        changed.append(ext[0] == '.' ? "" : ".").append(ext);
    }
    getExtension(old, false);
    store(std::move(changed));
}

void PathName::setBaseName(CString& old, const CString& name) {
    const PathParts parts = splitPath(text());
    std::string changed(parts.drive);
    changed.append(parts.directory).append(name).append(parts.extension);
    getBaseName(old);
    store(std::move(changed));
}

void PathName::append(const CString& component) {
    std::string changed(text());
    changed.append("\\").append(component);
    const bool wasEmpty = isEmpty();
    if (!wasEmpty) {
        collapseSeparators(changed);
    }
    store(std::move(changed));
    if (wasEmpty) {
        m_strEntered = m_strPath;
    }
}

void PathName::setDirectory(PathName& old, const CString& dir) {
    CString fileName;
    getFileName(fileName);
    std::string moved = static_cast<const char*>(dir);
    moved.append("\\").append(fileName);
    getParent(old);
    setPath(CString(std::move(moved)));
    m_strEntered = m_strPath;
}

void PathName::setDirectory(PathName& old, const PathName& dir) {
    setDirectory(old, CString(dir.m_strPath));
}

}  // namespace juntora
