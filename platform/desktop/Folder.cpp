#include "platform/desktop/Folder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/kernel/hostEnvironment.h"

namespace juntora::desktop {
namespace {

constexpr std::size_t MAX_NAME = 64;

bool isFitName(const std::string& name) {
    const char* allowed = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-";
    return !name.empty() && name.size() <= MAX_NAME && name.front() != '.' &&
           name.find_first_not_of(allowed) == std::string::npos;
}

/// Makes and opens `name` below `parent`; -1 with the problem otherwise.
int enter(int parent, const std::string& name, const std::string& path, Problem* problem) {
    if (mkdirat(parent, name.c_str(), 0700) != 0 && errno != EEXIST) {
        *problem = "cannot make the folder " + path + ": " + std::strerror(errno);
        return -1;
    }
    const int descriptor =
        openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) {
        *problem = path + " is not a folder that can be entered (" + std::strerror(errno) +
                   "); remove it, or name another place by XDG_RUNTIME_DIR";
        return -1;
    }
    struct stat state {};
    if (fstat(descriptor, &state) != 0 || state.st_uid != geteuid() ||
        (state.st_mode & 0077) != 0) {
        *problem = "the folder " + path +
                   " belongs to another user or is open to others; remove it or make it yours "
                   "alone (mode 0700), or name another place by XDG_RUNTIME_DIR";
        close(descriptor);
        return -1;
    }
    return descriptor;
}

}  // namespace

Folder::Folder(Folder&& other) noexcept { *this = std::move(other); }

Folder& Folder::operator=(Folder&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_path, other.m_path);
    return *this;
}

Folder::~Folder() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
    }
}

Folder Folder::open(Problem* problem) {
    std::string name = kernel::hostEnvironment("JUNTORA_DESKTOP");
    if (name.empty()) {
        name = "default";
    }
    if (!isFitName(name)) {
        *problem = "JUNTORA_DESKTOP is \"" + name +
                   "\"; a desktop's name is 1 to 64 letters, digits, '.', '_' and '-', and does "
                   "not begin with '.'";
        return {};
    }
    std::string base = kernel::hostEnvironment("XDG_RUNTIME_DIR");
    std::string level = "juntora";
    if (base.empty() || base.front() != '/') {
        base = "/tmp";
        level += "-" + std::to_string(geteuid());
    }
    const int top = ::open(base.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (top < 0) {
        *problem = "cannot enter " + base + " (" + std::strerror(errno) +
                   "); set XDG_RUNTIME_DIR to a folder of yours, or unset it";
        return {};
    }
    Folder folder;
    const std::string middlePath = base + "/" + level;
    const int middle = enter(top, level, middlePath, problem);
    close(top);
    if (middle >= 0) {
        folder.m_path = middlePath + "/" + name;
        folder.m_descriptor = enter(middle, name, folder.m_path, problem);
        close(middle);
    }
    return folder;
}

void Folder::removeIfEmpty() const { rmdir(m_path.c_str()); }

}  // namespace juntora::desktop
