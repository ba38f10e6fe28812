// A file that comes into its place whole, or not at all.
#pragma once

#include <sys/types.h>

#include <string>
#include <string_view>

namespace juntora::files {

/// An empty file of a name of its own beside `path`, a Linux path without links, until it is put
/// into that place; if it never is, it goes with this object. A process that is killed meanwhile
/// leaves it behind: ".juntora-" and six characters. Failures set errno.
class NewFile {
public:
    /// `mode` is the file's, whatever the process's mask.
    NewFile(std::string path, mode_t mode);
    ~NewFile();
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    bool isOpen() const { return m_file >= 0; }
    int descriptor() const { return m_file; }
    bool write(std::string_view bytes);
    /// Into the place of what is there. Who has that open keeps it.
    bool replace();
    /// Only where nothing is there (EEXIST).
    bool place();

private:
    /// Some file systems say only here that there was no room.
    bool finish();

    std::string m_path;
    std::string m_ownName;
    int m_file;
};

}  // namespace juntora::files
