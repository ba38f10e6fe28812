// An installation, a home and a machine's settings of a test's own.
#pragma once

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/DesktopSandbox.h"

namespace juntora::test {

/// HOME, JUNTORA_ROOT and JUNTORA_SITE name folders "home", "root" and "site" below folder();
/// "home" is there. The registry and the temporary files are the sandbox's. Each test is a process
/// of its own when ctest runs it.
class SetupFolder : public ::testing::Test {
protected:
    SetupFolder() {
        m_sandbox.enter();
        // Some parts run as another user.
        chmod(m_sandbox.runtimeFolder().c_str(), 0711);
        std::filesystem::create_directories(at("home"));
        set("HOME", at("home"));
        set("JUNTORA_ROOT", at("root"));
        set("JUNTORA_SITE", at("site"));
        for (const char* name : {"HOMEPATH", "HOMEDRIVE", "BINROOTDIR", "VOLTARAINIPATH"}) {
            unset(name);
        }
    }

    std::string folder() const { return m_sandbox.runtimeFolder() + "/setup"; }
    std::string temporary(const std::string& name) const {
        return m_sandbox.temporaryFolder() + "/" + name;
    }
    /// The path of something in the folder, in this machine's form and in the platform's.
    std::string at(const std::string& name) const { return folder() + "/" + name; }
    std::string platformPath(const std::string& name) const {
        std::string path = "C:" + at(name);
        std::replace(path.begin(), path.end(), '/', '\\');
        return path;
    }

    /// Folders on the way are made.
    static void writeFile(const std::string& path, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path, std::ios::binary) << text;
    }
    void write(const std::string& name, const std::string& text) const {
        writeFile(at(name), text);
    }
    static std::string contentOf(const std::string& path) {
        if (!std::filesystem::is_regular_file(path)) {
            return "(no file)";
        }
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::string content(const std::string& name) const { return contentOf(at(name)); }

    static void set(const char* name, const std::string& value) { setenv(name, value.c_str(), 1); }
    static void unset(const char* name) { unsetenv(name); }
    static std::string get(const char* name) {
        const char* value = std::getenv(name);
        return value ? value : "(unset)";
    }

private:
    DesktopSandbox m_sandbox;
};

}  // namespace juntora::test
