// A folder of a test's own with drives and a table of mounts.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace juntora::test {

/// Drives are links in the folder's config, the table of mounts is the file that a test writes; the
/// current directory and the environment are as before at the end.
class FilesFolder : public ::testing::Test {
protected:
    FilesFolder() {
        // Not in the run's own folder: some parts run as another user, whom that keeps out.
        std::string name = "/tmp/juntora-files-XXXXXX";
        m_folder = std::filesystem::canonical(mkdtemp(name.data()));
        std::filesystem::create_directories(m_folder / "config/juntora/drives");
        setenv("XDG_CONFIG_HOME", (m_folder / "config").c_str(), 1);
        setenv("JUNTORA_MOUNTS", (m_folder / "mounts").c_str(), 1);
        writeMounts("");
    }
    ~FilesFolder() override {
        std::filesystem::current_path(m_before);
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("JUNTORA_MOUNTS");
        std::filesystem::remove_all(m_folder);
    }

    /// The Linux path of something in the folder, and the same as the platform has it.
    std::string host(const std::string& name) const { return m_folder / name; }
    std::string path(const std::string& name) const {
        std::string text = "C:" + host(name);
        std::replace(text.begin(), text.end(), '/', '\\');
        return text;
    }

    std::string makeFolder(const std::string& name) const {
        std::filesystem::create_directories(host(name));
        return host(name);
    }
    void write(const std::string& name, const std::string& text) const {
        makeFolder(std::filesystem::path(name).parent_path());
        std::ofstream(host(name)) << text;
    }
    void linkDrive(char letter, const std::string& target) const {
        std::filesystem::create_symlink(
            target, m_folder / "config/juntora/drives" / (std::string{letter} + ":"));
    }
    /// `mounts`: lines of "mounted point type source".
    void writeMounts(const std::string& mounts) const {
        std::ofstream file(m_folder / "mounts");
        file << "nonsense\n27 1 254:0 / / rw,relatime - ext4 /dev/vda rw\n";
        std::istringstream words(mounts);
        for (std::string mounted, point, type, source;
             words >> mounted >> point >> type >> source;) {
            file << "50 27 0:50 " << mounted << ' ' << point << " rw shared:7 master:1 - " << type
                 << ' ' << source << " rw\n";
        }
    }

private:
    std::filesystem::path m_before = std::filesystem::current_path();
    std::filesystem::path m_folder;
};

}  // namespace juntora::test
