#include "tests/registration/SuiteFolder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

std::string logFile() { return std::getenv("TEST_SERVER_LOG"); }

}  // namespace

SuiteFolder::SuiteFolder() {
    sandbox().enter();
    for (const char* folder : {"/suite", "/registry", "/data"}) {
        fs::remove_all(sandbox().runtimeFolder() + folder);
    }
    for (const char* folder : {"/tools/draftel", "/tools/voltara", "/tools/bin",
                               "/share/voltara/registration", "/lib"}) {
        fs::create_directories(root() + folder);
    }
    const std::string installation = fs::path(ProgramFolder()).parent_path();
    fs::create_directory_symlink(installation + "/lib/voltara", root() + "/lib/voltara");
    setenv("JUNTORA_ROOT", root().c_str(), 1);
    setenv("JUNTORA_CATALOGUES", (installation + "/share/voltara/catalogues").c_str(), 1);
    setenv("TEST_SERVER_LOG", (root() + "/log").c_str(), 1);
    for (const char* name : {"systemroot", "BINROOTDIR", "OAPERUSERTLIBREG",
                             "MRN_TARVEX_DISABLE_ADMIN_MODE", "JUNTORA_REGISTRAR_SECONDS"}) {
        unsetenv(name);
    }
}

const std::string& SuiteFolder::root() {
    static const std::string folder = sandbox().runtimeFolder() + "/suite";
    return folder;
}

std::string SuiteFolder::toolPath(const std::string& toolDir, const std::string& file) {
    std::string folder = "C:" + root();
    std::ranges::replace(folder, '/', '\\');
    return folder + "\\tools\\" + toolDir + "\\" + file;
}

std::string SuiteFolder::classId(int number) {
    char text[40];
    std::snprintf(text, sizeof text, "6C1E9000-%04X-4D0C-9A41-527E0BC48D16", number);
    return text;
}

std::string SuiteFolder::addServer(const std::string& toolDir, const std::string& behaviour,
                                   int number) {
    const std::string name = behaviour + "-" + classId(number);
    fs::create_symlink(ProgramFolder() + "/registration_server",
                       fs::path(root()) / "tools" / toolDir / name);
    return name + ".exe";
}

void SuiteFolder::addLibrary(const std::string& toolDir, const std::string& name,
                             const std::string& library) {
    fs::create_symlink(ProgramFolder() + "/libregistration_" + library + ".so",
                       fs::path(root()) / "tools" / toolDir / (name + ".so"));
}

void SuiteFolder::writeTable(const std::string& name, const std::string& text) {
    std::ofstream(root() + "/share/voltara/registration/" + name) << text;
}

SuiteFolder::Lines SuiteFolder::takeLog() {
    Lines lines;
    std::ifstream log(logFile());
    for (std::string line; std::getline(log, line);) {
        lines.push_back(line);
    }
    fs::remove(logFile());
    return lines;
}

SuiteFolder::Outcome SuiteFolder::control(const Lines& arguments, const Lines& environment) {
    ChildProcess process("juntoractl", arguments, {environment, "", true});
    const std::string output = process.readAll();
    const int code = process.wait().value_or(-1);
    return {code, output, process.errors()};
}

std::string SuiteFolder::dump() {
    std::string text =
        control({"registry", "list", "HKCU"}).output + control({"registry", "list", "HKLM"}).output;
    std::set<std::string> services;
    const std::string folder = sandbox().runtimeFolder() + "/data/dbus-1/services";
    if (fs::exists(folder)) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            services.insert(entry.path().filename());
        }
    }
    for (const std::string& service : services) {
        text += service + "\n";
    }
    return text;
}

}  // namespace juntora::test
