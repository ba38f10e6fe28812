#include "setup/userCopy.h"

#include "platform/files/access.h"
#include "platform/files/status.h"
#include "platform/files/temporaryFiles.h"
#include "platform/files/wholeFile.h"
#include "setup/environmentText.h"
#include "setup/home.h"
#include "setup/setupSearch.h"

namespace juntora {
namespace {

/// Behind the last "/"; behind the last "\" where there is none.
std::string lastComponent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return path.substr((slash == std::string::npos ? path.rfind('\\') : slash) + 1);
}

bool isThere(const std::string& path) { return CheckAccess(path.c_str(), ACCESS_EXISTS); }
bool isOwn(const std::string& path) { return CheckAccess(path.c_str(), ACCESS_READ_WRITE); }

bool findVersion(const std::string& product, const std::string& version, const std::string& file,
                 std::string* out) {
    return SearchFile((product + "/" + version + "/" + file).c_str(), out) && isOwn(*out);
}

bool makeFolder(const std::string& path) { return !isThere(path) && MakeDirectory(path.c_str()); }

/// All users share the place: what another one has put there is none of this one's settings.
std::string standByFolder(const std::string& version) {
    char temporary[2048];
    if (GetTempPathA(sizeof temporary, temporary) == 0) {
        return "";
    }
    std::string folder = temporary + version;
    if (makeFolder(folder)) {
        ChangeMode(folder.c_str(), MODE_OWNER_READ_WRITE);
    }
    return IsOwnFolder(folder.c_str()) ? folder : "";
}

/// The folder for a copy; empty if there can be none.
std::string copyFolder(const std::string& home, const std::string& product,
                       const std::string& version) {
    std::string folder = home + "/mrdsetup";
    makeFolder(folder);
    makeFolder(folder += "/" + product);
    makeFolder(folder += "/" + version);
    const bool isUsable = isOwn(folder) || ChangeMode(folder.c_str(), MODE_OWNER_READ_WRITE);
    return isUsable ? folder : standByFolder(version);
}

bool openToAppend(const std::string& path) {
    return AppendToFile(path.c_str(), nullptr, 0) == AppendResult::DONE && isOwn(path);
}

}  // namespace

bool EnsureUserCopy(const std::string& product, const std::string& version,
                    const std::string& source, std::string* out) {
    const std::string file = lastComponent(source);
    if (file.empty()) {
        return false;
    }
    // Before the first search, which would make a home that is always on drive C:.
    const std::string home = homeFolder(HomeDrive::OF_THE_USER);
    std::string path;
    if ((FindSetupFile(product.c_str(), file.c_str(), &path) && isOwn(path)) ||
        (!home.empty() && findVersion(product, version, file, &path))) {
        *out = path;
        return true;
    }
    const std::string folder = home.empty() ? "" : copyFolder(home, product, version);
    if (folder.empty()) {
        return false;
    }
    path = folder + "/" + file;
    if (!isThere(path) && CopyFileA(source.c_str(), path.c_str(), 1)) {
        SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    }
    if (!openToAppend(path)) {
        return false;
    }
    *out = path;
    return true;
}

bool HasUserCopy(const std::string& product, const std::string& version,
                 const std::string& source) {
    if (isOwn(source)) {
        return true;
    }
    const std::string home = environmentText("HOME");
    if (home.empty()) {
        return false;
    }
    const std::string file = lastComponent(source);
    std::string path;
    return findVersion(product, version, file, &path) ||
           isThere(home + "/" + product + "/" + version + "/" + file);
}

}  // namespace juntora
