#include "platform/files/NewFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/files/transfer.h"

namespace juntora::files {

NewFile::NewFile(std::string path, mode_t mode)
    : m_path(std::move(path)),
      m_ownName(m_path.substr(0, m_path.rfind('/') + 1) + ".juntora-XXXXXX"),
      m_file(mkostemp(m_ownName.data(), O_CLOEXEC)) {
    if (m_file >= 0) {
        fchmod(m_file, mode);
    } else {
        m_ownName.clear();
    }
}

NewFile::~NewFile() {
    const int error = errno;
    if (m_file >= 0) {
        close(m_file);
    }
    if (!m_ownName.empty()) {
        unlink(m_ownName.c_str());
    }
    errno = error;
}

bool NewFile::write(std::string_view bytes) { return writeAll(m_file, bytes); }

bool NewFile::finish() {
    const int file = std::exchange(m_file, -1);
    return close(file) == 0;
}

bool NewFile::replace() {
    if (!finish() || rename(m_ownName.c_str(), m_path.c_str()) != 0) {
        return false;
    }
    m_ownName.clear();
    return true;
}

bool NewFile::place() {
    if (!finish()) {
        return false;
    }
    if (renameat2(AT_FDCWD, m_ownName.c_str(), AT_FDCWD, m_path.c_str(), RENAME_NOREPLACE) == 0) {
        m_ownName.clear();
        return true;
    }
    // File systems that have no such renaming have links: the name of its own goes at the end.
    return (errno == EINVAL || errno == ENOSYS) && link(m_ownName.c_str(), m_path.c_str()) == 0;
}

}  // namespace juntora::files
