// One server after the other, and tables of them.
#include <dlfcn.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "common/PerUserRegistration.h"
#include "platform/kernel/process.h"
#include "registration/classKeys.h"
#include "registration/registryKeys.h"
#include "registration/suiteRegistration.h"
#include "tests/registration/SuiteFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> g_reported;

void take(const char* line) { g_reported.emplace_back(line); }

/// Whether a process has this on its command line.
bool runs(const std::string& text) {
    for (const auto& process : fs::directory_iterator("/proc")) {
        std::ifstream file(process.path() / "cmdline", std::ios::binary);
        const std::string line{std::istreambuf_iterator<char>(file), {}};
        if (line.find(text) != std::string::npos) {
            return true;
        }
    }
    return false;
}

class ServerTest : public SuiteFolder {
protected:
    ServerTest() { g_reported.clear(); }
    ~ServerTest() override { RegDeleteTreeA(HKEY_CURRENT_USER, "Software\\Classes"); }

    static Lines takeReports() { return std::exchange(g_reported, {}); }
    static std::string done(const std::string& scope, const std::string& path) {
        return "INFO(TVCOMMN-11077):  Registration done for " + scope + ": " + path;
    }
    static bool isFailure(const std::string& line, const std::string& path) {
        return line.starts_with("ERROR(TVCOMMN-11078):  ") &&
               line.find(": " + path + ". ") != line.npos;
    }
    static void beOrdinary() { setenv("MRN_TARVEX_DISABLE_ADMIN_MODE", "1", 1); }

    /// Makes a class key of the user's with the path as its server's.
    static void writeClass(int number, const std::string& path) {
        const std::string key = classKeyOf(classId(number)) + "\\LocalServer32";
        ASSERT_EQ(1, setUserKeyDefaultValue(key.c_str(), path.c_str()));
    }
    static bool hasClass(int number) {
        HKEY key{};
        const DWORD error =
            RegOpenKeyExA(HKEY_CURRENT_USER, classKeyOf(classId(number)).c_str(), KEY_READ, &key);
        RegCloseKey(key);
        return error == ERROR_SUCCESS;
    }
    static int registerOne(int force, int doRegister, const std::string& kind,
                           const std::string& path, int number) {
        return registerServer(force, doRegister, kind.c_str(), path.c_str(),
                              classId(number).c_str(),
                              kind == "EXE" ? "LocalServer32" : "InprocServer32", &take, nullptr);
    }
};

TEST_F(ServerTest, EachKindHasItsRegistrar) {
    beOrdinary();
    const std::string good = addServer("voltara", "good", 1);
    const std::string crash = addServer("voltara", "crash", 2);
    const std::string hang = addServer("voltara", "hang", 3);
    std::ofstream(root() + "/tools/voltara/plain") << "no program";
    std::ofstream(root() + "/tools/voltara/garbage.so") << "no library";
    addLibrary("voltara", "parts", "good");
    addLibrary("voltara", "Parts In A Box", "good");
    addLibrary("voltara", "falls", "crashing");
    addLibrary("voltara", "hangs", "hanging");
    addLibrary("voltara", "lacks", "lacking");
    enum Report { NONE, DONE, FAILED };
    const struct {
        const char* kind;
        std::string file;
        int doRegister;
        int result;
        Report report;
        Lines log;
    } cases[] = {
        {"EXE", good, 1, 1, DONE, {"good /regserver []"}},
        {"EXE", good, 0, 1, DONE, {"good /unregserver []"}},
        {"EXE", crash, 1, 1, DONE, {"crash /regserver []"}},
        {"EXE", hang, 1, 0, FAILED, {"hang /regserver []"}},
        {"EXE", "plain.exe", 1, 0, FAILED, {}},
        {"EXE", "nowhere.exe", 1, 0, NONE, {}},
        {"EXE", good + "\" \"", 1, 0, FAILED, {}},
        {"exe", good, 1, 0, NONE, {}},
        {"", good, 1, 0, NONE, {}},
        {"DLL", "PARTS.dll", 1, 1, DONE, {"DllRegisterServer []"}},
        {"DLL", "parts.DLL", 0, 1, DONE, {"DllUnregisterServer []"}},
        {"DLL", "parts.so", 1, 1, DONE, {"DllRegisterServer []"}},
        {"DLL", "falls.dll", 1, 0, FAILED, {"DllRegisterServer []"}},
        {"DLL", "hangs.dll", 1, 0, FAILED, {"DllRegisterServer []"}},
        {"DLL", "lacks.dll", 1, 0, FAILED, {}},
        {"DLL", "garbage.dll", 1, 0, NONE, {}},
        {"DLL", "nowhere.dll", 1, 0, NONE, {}},
        {"OCX", "parts.ocx", 1, 1, DONE, {"DllRegisterServer []"}},
        {"OCX", "parts.dll", 0, 1, DONE, {"DllUnregisterServer []"}},
        {"OCX", "Parts In A Box.ocx", 1, 1, DONE, {"DllRegisterServer []"}},
        {"OCX", "falls.ocx", 1, 1, DONE, {"DllRegisterServer []"}},
        {"OCX", "lacks.ocx", 1, 1, DONE, {}},
        {"OCX", "nowhere.ocx", 1, 0, NONE, {}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::string(each.kind) + " " + each.file);
        const std::string path = toolPath("voltara", each.file);
        setenv("JUNTORA_REGISTRAR_SECONDS", each.file.starts_with("hang") ? "1" : "none", 1);
        EXPECT_EQ(each.result, registerOne(1, each.doRegister, each.kind, path, 1));
        EXPECT_EQ(each.log, takeLog());
        const Lines reports = takeReports();
        ASSERT_EQ(each.report == NONE ? 0U : 1U, reports.size());
        EXPECT_TRUE(each.report != DONE || reports[0] == done("user", path)) << reports[0];
        EXPECT_TRUE(each.report != FAILED || isFailure(reports[0], path)) << reports[0];
    }
    EXPECT_FALSE(runs(root() + "/tools/voltara/hang")) << "what did not end is ended";
}

TEST_F(ServerTest, TheSystemsFolderIsWhereItIsSaidToBe) {
    addLibrary("draftel", "parts", "good");
    const std::string path = toolPath("draftel", "parts.ocx");
    setenv("SystemRoot", root().c_str(), 1);
    EXPECT_EQ(0, registerOne(1, 1, "OCX", path, 1)) << "there is no registrar in it";
    EXPECT_EQ(1U, takeReports().size());
    unsetenv("SystemRoot");
    fs::remove(root() + "/lib/voltara");
    EXPECT_EQ(0, registerOne(1, 1, "OCX", path, 1));
    EXPECT_EQ(0, registerOne(1, 1, "DLL", toolPath("draftel", "parts.dll"), 1));
    EXPECT_EQ(Lines{}, takeReports()) << "there is no such folder";
    writeTable("servers.txt",
               "schematic OCX draftel parts.ocx InprocServer32 " + classId(1) + "\n");
    const Outcome told = control({"register"});
    EXPECT_EQ(1, told.code);
    EXPECT_TRUE(told.output.starts_with("no registrar ")) << told.output;
    EXPECT_NE(told.errors.find("systemroot"), told.errors.npos) << told.errors;
    EXPECT_EQ(Lines{}, takeLog());
}

TEST_F(ServerTest, WhatIsInOrderIsLeftAlone) {
    beOrdinary();
    const std::string file = addServer("voltara", "good", 1);
    const std::string path = toolPath("voltara", file);
    const std::string here = root() + "/tools/voltara/good-" + classId(1);
    fs::create_symlink(here, root() + "/link");
    for (const std::string& value : {path, '"' + path + '"', here, root() + "/link",
                                     root() + "/TOOLS/voltara/../Voltara/" + file}) {
        writeClass(1, value);
        EXPECT_EQ(1, registerOne(0, 1, "EXE", path, 1)) << value;
        EXPECT_TRUE(hasClass(1)) << value;
    }
    EXPECT_EQ(Lines{}, takeLog());
    EXPECT_EQ(Lines{}, takeReports());
    // Whatever is registered, these two ask nobody.
    EXPECT_EQ(1, registerOne(1, 1, "EXE", path, 1));
    EXPECT_EQ(1, registerOne(0, 0, "EXE", path, 1));
    EXPECT_EQ((Lines{"good /regserver []", "good /unregserver []"}), takeLog());
}

TEST_F(ServerTest, WhatIsNotStartsClean) {
    beOrdinary();
    addServer("voltara", "good", 1);
    const std::string path = toolPath("voltara", "nowhere.exe");
    const std::string tooLong = root() + "/" + std::string(5000, 'x');
    for (const std::string& value : {root() + "/elsewhere", std::string(), tooLong}) {
        writeClass(1, value);
        EXPECT_EQ(0, registerOne(0, 1, "EXE", path, 1));
        EXPECT_FALSE(hasClass(1)) << value.substr(0, 300);
    }
    writeClass(1, path);
    EXPECT_EQ(0, isRegisteredAt(classId(1).c_str(), "InprocServer32", path.c_str()));
    EXPECT_FALSE(hasClass(1)) << "its server is of another kind";
    EXPECT_EQ(0, isRegisteredAt(classId(2).c_str(), "LocalServer32", path.c_str()));
    EXPECT_FALSE(hasClass(2));
    // An administrator's look is at the machine's classes.
    if (geteuid() == 0) {
        writeClass(1, "elsewhere");
        unsetenv("MRN_TARVEX_DISABLE_ADMIN_MODE");
        EXPECT_EQ(0, isRegisteredAt(classId(1).c_str(), "LocalServer32", path.c_str()));
        EXPECT_TRUE(hasClass(1));
    }
}

TEST_F(ServerTest, ATablePassesOverItsOwnProgramAndDebugFolders) {
    beOrdinary();
    const std::string self = fs::path(OwnProgram()).filename();
    const std::string good = addServer("voltara", "good", 1);
    std::string shouted = self + ".EXE";
    shouted[0] = 'R';
    fs::create_symlink(ProgramFolder() + "/registration_server", root() + "/tools/voltara/" + self);
    const ServerRow rows[] = {{"EXE", "voltara", shouted, "LocalServer32", classId(2)},
                              {"EXE", "voltara", good, "LocalServer32", classId(1)}};
    EXPECT_EQ(1, registerServerList(0, 1, rows, 2, nullptr, nullptr));
    EXPECT_EQ(Lines{"good /regserver []"}, takeLog());
    EXPECT_EQ(1, registerServerList(0, 1, rows, 2, &take, nullptr));
    EXPECT_EQ(Lines{}, takeLog()) << "it is in order by now";

    fs::rename(root(), sandbox().runtimeFolder() + "/suite_good");
    setenv("JUNTORA_ROOT", (sandbox().runtimeFolder() + "/suite_good").c_str(), 1);
    setenv("TEST_SERVER_LOG", (sandbox().runtimeFolder() + "/suite_good/log").c_str(), 1);
    EXPECT_EQ(1, registerServerList(1, 1, rows, 2, &take, nullptr));
    EXPECT_EQ(Lines{}, takeLog());
    EXPECT_EQ(Lines{}, takeReports());
    fs::remove_all(sandbox().runtimeFolder() + "/suite_good");
}

TEST_F(ServerTest, TheRunTellsServersWhoseRegistryIsMeant) {
    addLibrary("draftel", "hostAutomation", "good");
    addLibrary("voltara", "hostAutomation", "good");
    const std::string good = addServer("voltara", "good", 1);
    const auto row = [](const std::string& group, const std::string& rest) {
        return group + " " + rest + " " + classId(1) + "\n";
    };
    writeTable("servers.txt",
               row("simulation", "DLL voltara hostAutomation.dll InprocServer32") +
                   row("schematic", "DLL draftel hostAutomation.dll InprocServer32") +
                   row("simulation", "EXE voltara " + good + " LocalServer32"));
    setenv("PATH", "\"/usr/bin\":/no such \"folder\":/bin", 1);
    beOrdinary();
    int functions = 0;
    EXPECT_EQ(1, registerSuiteServers(1, 1, &take, &functions));
    EXPECT_EQ((Lines{"DllRegisterServer [1]", "registerExitFunction [1]", "DllRegisterServer [1]",
                     "good /regserver [1]"}),
              takeLog());
    EXPECT_EQ(3U, takeReports().size());
    EXPECT_EQ(nullptr, std::getenv("OAPERUSERTLIBREG"));
    EXPECT_STREQ("/usr/bin:/no such folder:/bin", std::getenv("PATH"));
    const auto isLoaded = [](const std::string& tool) {
        return dlopen((root() + "/tools/" + tool + "/hostAutomation.so").c_str(),
                      RTLD_NOW | RTLD_NOLOAD) != nullptr;
    };
    EXPECT_TRUE(isLoaded("draftel")) << "what has taken the functions stays";

    setenv("OAPERUSERTLIBREG", "1", 1);
    EXPECT_EQ(1, registerSuiteServers(0, 0, nullptr, nullptr));
    EXPECT_EQ(
        (Lines{"DllUnregisterServer [1]", "DllUnregisterServer [1]", "good /unregserver [1]"}),
        takeLog());
    EXPECT_STREQ("1", std::getenv("OAPERUSERTLIBREG"));
    if (geteuid() == 0) {
        unsetenv("MRN_TARVEX_DISABLE_ADMIN_MODE");
        setenv("OAPERUSERTLIBREG", "other", 1);
        EXPECT_EQ(1, registerSuiteServers(1, 1, &take, nullptr));
        EXPECT_EQ("good /regserver [other]", takeLog().back());
        EXPECT_EQ(done("admin", toolPath("voltara", good)), takeReports().back());
    }
}

TEST_F(ServerTest, TreesOfKeysGoWhateverTheirSize) {
    constexpr int SUBKEYS = 1000;
    std::string deep;
    for (int level = 0; level < 100; ++level) {
        deep += "\\a level of the tree " + std::to_string(level);
    }
    for (int i = 0; i < SUBKEYS; ++i) {
        ASSERT_EQ(1, setUserKeyDefaultValue(("Software\\Wide\\" + std::to_string(i) + deep).c_str(),
                                            "v"));
    }
    ASSERT_EQ(1, setUserKeyDefaultValue("Software\\Wider", "stays"));
    char path[] = "Software\\Wide";
    EXPECT_EQ(1, deleteKeyTree(HKEY_CURRENT_USER, path));
    EXPECT_STREQ("Software\\Wide", path);
    HKEY key{};
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegOpenKeyExA(HKEY_CURRENT_USER, path, KEY_READ, &key));
    EXPECT_EQ(1, deleteKeyTree(HKEY_CURRENT_USER, path)) << "it is gone anyway";
    EXPECT_EQ(0, deleteKeyTree(HKEY_CURRENT_USER, ""));
    EXPECT_EQ(0, deleteKeyTree(nullptr, path));
    std::string text;
    EXPECT_EQ(ERROR_SUCCESS,
              ReadRegistryText(HKEY_CURRENT_USER, "Software\\Wider", nullptr, &text));
    EXPECT_EQ(1, setUserKeyDefaultValue("Software\\Wider", "is replaced"));
    EXPECT_EQ(ERROR_SUCCESS,
              ReadRegistryText(HKEY_CURRENT_USER, "Software\\Wider", nullptr, &text));
    EXPECT_EQ("is replaced", text);
    EXPECT_EQ(0, setKeyDefaultValue(nullptr, "Software\\x", "v"));
}

}  // namespace
}  // namespace juntora::test
