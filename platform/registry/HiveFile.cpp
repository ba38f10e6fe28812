#include "platform/registry/HiveFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/kernel/SystemError.h"
#include "platform/kernel/hostEnvironment.h"
#include "platform/messages.h"

namespace juntora::registry {
namespace {

constexpr char MACHINE_PATH[] = "/var/lib/juntora/registry.db";
constexpr char USER_NAME[] = "/juntora/registry.db";
constexpr mode_t WRITABLE_BY_OTHERS = S_IWGRP | S_IWOTH;

std::string folderOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

/// The machine's may be the administrator's; the user's is nobody else's.
bool isTrusted(const struct stat& state, HiveKind kind) {
    return (state.st_uid == geteuid() || (kind == HiveKind::MACHINE && state.st_uid == 0)) &&
           (state.st_mode & WRITABLE_BY_OTHERS) == 0;
}

Problem distrust(const std::string& path, const char* what) {
    return std::string("the ") + what + " " + path +
           " belongs to another user or may be written by others; make it yours alone, or name "
           "another folder by JUNTORA_REGISTRY";
}

DWORD failBySystem(const char* what, const std::string& path, Problem* problem) {
    const DWORD error = kernel::errorOf(errno);
    if (error == ERROR_ACCESS_DENIED || error == ERROR_WRITE_PROTECT) {
        return ERROR_ACCESS_DENIED;  // What every user meets who is no administrator.
    }
    *problem = std::string("cannot ") + what + " " + path + ": " + std::strerror(errno);
    return error == ERROR_DISK_FULL ? error : ERROR_REGISTRY_IO_FAILED;
}

}  // namespace

DWORD locateHive(HiveKind kind, std::string* path, Problem* problem) {
    const std::string folder = kernel::hostEnvironment("JUNTORA_REGISTRY");
    if (!folder.empty()) {
        if (folder.front() != '/') {
            *problem = "JUNTORA_REGISTRY is \"" + folder + "\"; it must begin with \"/\"";
            return ERROR_REGISTRY_IO_FAILED;
        }
        *path = folder + (kind == HiveKind::USER ? "/user.db" : "/machine.db");
        return ERROR_SUCCESS;
    }
    if (kind == HiveKind::MACHINE) {
        *path = MACHINE_PATH;
        return ERROR_SUCCESS;
    }
    const std::string data = kernel::userDataFolder();
    if (data.empty()) {
        *problem = "there is no place for the user's registry; set HOME or JUNTORA_REGISTRY";
        return ERROR_REGISTRY_IO_FAILED;
    }
    *path = data + USER_NAME;
    return ERROR_SUCCESS;
}

DWORD checkHiveFile(HiveKind kind, const std::string& path, FileIdentity* identity,
                    Problem* problem) {
    struct stat state {};
    const std::string folder = folderOf(path);
    if (stat(folder.c_str(), &state) == 0 && !isTrusted(state, kind)) {
        *problem = distrust(folder, "folder");
        return ERROR_ACCESS_DENIED;
    }
    if (stat(path.c_str(), &state) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? ERROR_FILE_NOT_FOUND
                                                   : failBySystem("look at", path, problem);
    }
    if (!S_ISREG(state.st_mode)) {
        *problem = path + " is no file; move it away, and it will be made anew";
        return ERROR_NOT_REGISTRY_FILE;
    }
    if (!isTrusted(state, kind)) {
        *problem = distrust(path, "file");
        return ERROR_ACCESS_DENIED;
    }
    *identity = {state.st_dev, state.st_ino};
    return ERROR_SUCCESS;
}

DWORD makeHiveFolder(HiveKind kind, const std::string& path, Problem* problem) {
    const std::string folder = folderOf(path);
    const bool isShared = path == MACHINE_PATH;
    for (std::size_t end = 1; end != std::string::npos;) {
        end = folder.find('/', end);
        const std::string each = folder.substr(0, end);
        if (mkdir(each.c_str(), isShared ? 0755 : 0700) != 0 && errno != EEXIST) {
            return failBySystem("make the folder", each, problem);
        }
        end += end == std::string::npos ? 0 : 1;
    }
    struct stat state {};
    if (stat(folder.c_str(), &state) != 0) {
        return failBySystem("look at", folder, problem);
    }
    if (!isTrusted(state, kind)) {
        *problem = distrust(folder, "folder");
        return ERROR_ACCESS_DENIED;
    }
    return ERROR_SUCCESS;
}

bool isInReadOnlyFolder(const std::string& path) {
    return faccessat(AT_FDCWD, folderOf(path).c_str(), W_OK, AT_EACCESS) != 0;
}

DraftFile::DraftFile(HiveKind kind, const std::string& path) : m_path(path + ".XXXXXX") {
    const int file = mkostemp(m_path.data(), O_CLOEXEC);
    if (file < 0) {
        m_path.clear();
        return;
    }
    if (kind == HiveKind::MACHINE) {
        fchmod(file, 0644);
    }
    close(file);
}

DraftFile::~DraftFile() {
    if (!m_path.empty()) {
        unlink(m_path.c_str());
    }
}

bool DraftFile::publish(const std::string& path) const {
    return link(m_path.c_str(), path.c_str()) == 0 || errno == EEXIST;
}

}  // namespace juntora::registry
