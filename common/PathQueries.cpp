// What the file system knows of a path, and making and deleting what it names.
#include <ctime>

#include "common/PathName.h"
#include "platform/files/attributes.h"
#include "platform/files/status.h"
#include "platform/files/wholeFile.h"

namespace juntora {
namespace {

constexpr DWORD SHORT_FORM_CAPACITY = 260;

/// A directory may also be named with a separator at its end, which the platform refuses.
bool readStatus(std::string_view path, FileStatus* status) {
    std::string text(path);
    if (ReadFileStatus(text.c_str(), status)) {
        return true;
    }
    if (!text.ends_with('\\') && !text.ends_with('/')) {
        return false;
    }
    text.pop_back();
    return ReadFileStatus(text.c_str(), status);
}

}  // namespace

bool PathName::exists() const {
    FileStatus status;
    return readStatus(text(), &status);
}

bool PathName::isFile() const {
    FileStatus status;
    return readStatus(text(), &status) && status.kind == FileKind::REGULAR;
}

bool PathName::isDirectory() const {
    FileStatus status;
    return readStatus(text(), &status) && status.kind == FileKind::DIRECTORY;
}

std::int64_t PathName::fileSize() const {
    FileStatus status;
    return readStatus(text(), &status) ? status.size : -1;
}

std::int64_t PathName::accessTime() const {
    FileStatus status;
    return readStatus(text(), &status) ? status.accessTime : 0;
}

std::int64_t PathName::modifyTime() const {
    FileStatus status;
    return readStatus(text(), &status) ? status.modifyTime : 0;
}

std::int64_t PathName::createTime() const {
    FileStatus status;
    return readStatus(text(), &status) ? status.createTime : 0;
}

int PathName::setTime(FileTime kind, std::int64_t time) const {
    FileStatus status;
    if (kind == FileTime::CREATE || !readStatus(text(), &status)) {
        return -1;
    }
    (kind == FileTime::ACCESS ? status.accessTime : status.modifyTime) =
        time == 0 ? std::time(nullptr) : time;
    return SetFileTimes(c_str(), status.accessTime, status.modifyTime) ? 0 : -1;
}

int PathName::hasAttribute(unsigned long bit) const {
    const DWORD attributes = isEmpty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesA(c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? -1 : ((attributes & bit) != 0 ? 1 : 0);
}

int PathName::isReadOnly() const { return hasAttribute(FILE_ATTRIBUTE_READONLY); }
int PathName::isHidden() const { return hasAttribute(FILE_ATTRIBUTE_HIDDEN); }
int PathName::isSystem() const { return hasAttribute(FILE_ATTRIBUTE_SYSTEM); }
int PathName::isArchive() const { return hasAttribute(FILE_ATTRIBUTE_ARCHIVE); }
int PathName::isCompressed() const { return hasAttribute(FILE_ATTRIBUTE_COMPRESSED); }

int PathName::removeFile() const { return !isDirectory() && DeleteFileA(c_str()) ? 0 : 1; }

int PathName::createEmpty() const {
    FileStatus status;
    if (!isEmpty() && readStatus(text(), &status)) {
        return status.kind == FileKind::REGULAR ? 0 : 1;
    }
    return !isEmpty() && MakeEmptyFile(c_str()) ? 0 : 1;
}

int PathName::makeDirectory() const { return MakeDirectory(c_str()) ? 0 : 1; }

PathName PathName::getShortForm() const {
    char form[SHORT_FORM_CAPACITY];
    const DWORD length = GetShortPathNameA(c_str(), form, sizeof form);
    return length == 0 || length >= sizeof form ? PathName() : PathName(CString(form));
}

}  // namespace juntora
