// A folder of a test's own that catalogues are looked for in.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/support/TestDesktop.h"

namespace juntora::test {

class CatalogueFolder : public TestDesktop {
protected:
    CatalogueFolder() {
        std::filesystem::create_directories(m_folder);
        setenv("JUNTORA_CATALOGUES", m_folder.c_str(), 1);
    }
    ~CatalogueFolder() override {
        unsetenv("JUNTORA_CATALOGUES");
        std::filesystem::remove_all(m_folder);
    }

    std::string file(const std::string& name) const { return m_folder + "/" + name; }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(file(name)) << text;
    }
    static std::string catalogue(const std::string& module, const std::string& messages) {
        return "<catalogue module='" + module + "'>\n" + messages + "</catalogue>\n";
    }
    static std::string message(int number, const std::string& text) {
        return "<message number='" + std::to_string(number) + "' kind='error'><text>" + text +
               "</text></message>\n";
    }
    static std::string content(const std::string& path) {
        std::stringstream text;
        text << std::ifstream(path).rdbuf();
        return text.str();
    }

    const std::string m_folder = sandbox().runtimeFolder() + "/catalogues";
};

}  // namespace juntora::test
