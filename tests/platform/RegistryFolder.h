// A folder of a test's own with both hives of the registry in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/registry/registry.h"
#include "tests/support/apart.h"

namespace juntora::test {

class RegistryFolder : public ::testing::Test {
protected:
    using Names = std::vector<std::string>;

    RegistryFolder() {
        // Not in the run's own folder: some parts run as another user, whom that keeps out.
        std::string name = "/tmp/juntora-registry-XXXXXX";
        m_folder = mkdtemp(name.data());
        moveTo(m_folder);
        // Away from the files of a test before this one in the same process.
        for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            EXPECT_EQ(ERROR_SUCCESS, make(root, "Software"));
        }
    }
    ~RegistryFolder() override {
        RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
        unsetenv("JUNTORA_REGISTRY");
        std::filesystem::remove_all(m_folder);
    }

    std::string folder() const { return m_folder; }
    std::string file(const std::string& name) const { return m_folder + "/" + name; }
    static void moveTo(const std::string& folder) { setenv("JUNTORA_REGISTRY", folder.c_str(), 1); }

    static HKEY open(HKEY key, const std::string& path, REGSAM access = KEY_ALL_ACCESS) {
        HKEY result = nullptr;
        EXPECT_EQ(ERROR_SUCCESS, RegOpenKeyExA(key, path.c_str(), access, &result)) << path;
        return result;
    }
    static DWORD tryOpen(HKEY key, const std::string& path, REGSAM access = KEY_READ) {
        HKEY result = nullptr;
        const DWORD error = RegOpenKeyExA(key, path.c_str(), access, &result);
        return error == ERROR_SUCCESS ? RegCloseKey(result) : error;
    }
    static DWORD make(HKEY key, const std::string& path) {
        HKEY result = nullptr;
        const DWORD error = RegCreateKeyA(key, path.c_str(), &result);
        return error == ERROR_SUCCESS ? RegCloseKey(result) : error;
    }

    /// Writes a text, and makes its key where that is missing.
    static DWORD write(HKEY key, const std::string& path, const std::string& name,
                       const std::string& text) {
        HKEY result = nullptr;
        DWORD error = RegCreateKeyA(key, path.c_str(), &result);
        if (error == ERROR_SUCCESS) {
            error = RegSetValueExA(result, name.c_str(), REG_SZ, text.c_str(),
                                   static_cast<DWORD>(text.size() + 1));
            RegCloseKey(result);
        }
        return error;
    }
    /// The text, or "error" and its number.
    static std::string read(HKEY key, const std::string& path, const std::string& name) {
        HKEY result = nullptr;
        DWORD error = RegOpenKeyExA(key, path.c_str(), KEY_QUERY_VALUE, &result);
        char text[256] = "";
        if (error == ERROR_SUCCESS) {
            DWORD size = sizeof text;
            error = RegQueryValueExA(result, name.c_str(), nullptr, text, &size);
            RegCloseKey(result);
        }
        return error == ERROR_SUCCESS ? text : "error " + std::to_string(error);
    }

    /// The names of the subkeys, or of the values; an error that ends them early comes last.
    static Names subkeys(HKEY key) {
        return namesOf([&](DWORD index, char* name, DWORD* length) {
            return RegEnumKeyExA(key, index, name, length);
        });
    }
    static Names values(HKEY key) {
        return namesOf([&](DWORD index, char* name, DWORD* length) {
            return RegEnumValueA(key, index, name, length, nullptr, nullptr, nullptr);
        });
    }

    /// Whoever closes the file last puts all of it into one.
    static void closeFiles() {
        EXPECT_TRUE(apart([] {}));
    }

    static std::string content(const std::string& path) {
        if (!std::filesystem::is_regular_file(path)) {
            return "";
        }
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

private:
    template <typename Read>
    static Names namesOf(Read readName) {
        Names names;
        for (DWORD index = 0;; ++index) {
            char name[300];
            DWORD length = sizeof name;
            const DWORD error = readName(index, name, &length);
            if (error != ERROR_SUCCESS) {
                if (error != ERROR_NO_MORE_ITEMS) {
                    names.push_back("error " + std::to_string(error));
                }
                return names;
            }
            EXPECT_EQ(std::string(name).size(), length);
            names.emplace_back(name);
        }
    }

    std::string m_folder;
};

}  // namespace juntora::test
