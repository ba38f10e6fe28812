// The folder of a desktop: where it is, and whether it can be trusted.
#pragma once

#include <string>

namespace juntora::desktop {

/// Why something could not be had, for a person: what happened and what to do. Empty: no error.
using Problem = std::string;

/// An open folder of the calling user's alone.
class Folder {
public:
    Folder() = default;
    Folder(Folder&& other) noexcept;
    Folder& operator=(Folder&& other) noexcept;
    ~Folder();

    /// Makes the folder that the environment names, mode 0700, with those above it. Refuses links,
    /// other users' folders and folders that others may enter.
    static Folder open(Problem* problem);

    int descriptor() const { return m_descriptor; }
    const std::string& path() const { return m_path; }

    /// Removes it from the disk; does nothing while something lies in it.
    void removeIfEmpty() const;

private:
    int m_descriptor = -1;
    std::string m_path;
};

}  // namespace juntora::desktop
