// Whole runs, as a person starts them: juntoractl and the servers are processes of their own.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

#include "tests/registration/SuiteFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class SuiteTest : public SuiteFolder {
protected:
    /// Takes the installation of the build's, with the servers that there are.
    static void useBuild() {
        setenv("JUNTORA_ROOT", fs::path(ProgramFolder()).parent_path().c_str(), 1);
    }
    /// Makes servers of these behaviours, one class each, and their table.
    static void makeServers(const Lines& behaviours) {
        std::string table;
        int number = 0;
        for (const std::string& behaviour : behaviours) {
            const std::string file = addServer("voltara", behaviour, ++number);
            table += "simulation EXE voltara " + file + " LocalServer32 " + classId(number) + "\n";
        }
        writeTable("servers.txt", table);
    }
    /// The results of a run, by the words that it prints.
    static Lines results(const Lines& arguments, int code, const Lines& environment = {}) {
        Lines all{"register", "--json"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        const Outcome outcome = control(all, environment);
        EXPECT_EQ(code, outcome.code) << outcome.errors;
        Lines words;
        std::istringstream lines(outcome.output);
        for (std::string line; std::getline(lines, line);) {
            words.push_back(json::parse(line)["result"]);
        }
        return words;
    }
    static void forgetEverything() {
        fs::remove_all(sandbox().runtimeFolder() + "/registry");
        fs::remove_all(sandbox().runtimeFolder() + "/data");
    }
    static void setModes(mode_t mode) {
        for (const char* file : {"/registry/user.db", "/registry/machine.db"}) {
            chmod((sandbox().runtimeFolder() + file).c_str(), mode);
        }
    }
};

TEST_F(SuiteTest, TheSuiteComesAndGoes) {
    useBuild();
    for (const bool isOrdinary : {false, true}) {
        if (!isOrdinary && geteuid() != 0) {
            continue;
        }
        SCOPED_TRACE(isOrdinary ? "ordinary user" : "administrator");
        const Lines environment = isOrdinary ? Lines{ORDINARY} : Lines{};
        const std::string root = isOrdinary ? "HKCU" : "HKLM";
        const std::string other = isOrdinary ? "HKLM" : "HKCU";
        // The key that all classes are in stays.
        ASSERT_EQ(0,
                  control({"registry", "set", root + "\\Software\\Classes\\CLSID", "x", "y"}).code);
        const std::string before = dump();
        const std::string untouched = control({"registry", "list", other}).output;

        Lines expected(10, "not there");
        expected.insert(expected.end(), 5, "registered");
        expected.insert(expected.end(), 3, "not there");
        EXPECT_EQ(expected, results({}, 0, environment));
        const std::string registered = dump();
        EXPECT_NE(
            registered.find(root + "\\Software\\Classes\\Voltara.JuntoraLibraryStatus.16.6.0\n"),
            registered.npos);
        EXPECT_EQ(untouched, control({"registry", "list", other}).output);
        std::fill(expected.begin() + 10, expected.begin() + 15, "in order");
        EXPECT_EQ(expected, results({}, 0, environment));
        EXPECT_EQ(registered, dump());

        std::fill(expected.begin() + 10, expected.begin() + 15, "unregistered");
        EXPECT_EQ(expected, results({"--unregister"}, 0, environment));
        EXPECT_EQ(before, dump());
        EXPECT_EQ(3, control({"apps"}).code) << "no hub has come up for it";
        // What a hub leaves that was killed while it registered.
        for (const std::string left : {"\\CLSID\\{6C1E2F50-3B7A-4D0C-9A41-527E0BC48D16}\\x",
                                       "\\Voltara.JuntoraLibraryStatus.16.6.0"}) {
            std::string key = root;
            key.append("\\Software\\Classes").append(left);
            ASSERT_EQ(0, control({"registry", "set", key, "x", "y"}).code);
            EXPECT_EQ(expected, results({"--unregister"}, 0, environment));
            EXPECT_EQ(before, dump());
        }
        expected[10] = "not registered";
        EXPECT_EQ(expected, results({"--unregister"}, 0, environment)) << "once more";
        EXPECT_EQ(before, dump());
    }
}

TEST_F(SuiteTest, AResidentServerGoesFromWhereItWasRegistered) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "the machine's registry is written";
    }
    useBuild();
    ASSERT_EQ(0, control({"registry", "set", "HKLM\\Software\\Classes\\CLSID", "x", "y"}).code);
    const std::string before = dump();
    const Lines environment{ORDINARY, "TARVEX_REGISTER_IN_HKLM=1"};
    EXPECT_EQ("registered", results({}, 0, environment)[10]);
    EXPECT_NE(control({"registry", "list", "HKLM"}).output.find("JuntoraLibraryStatus"),
              std::string::npos);
    EXPECT_EQ("unregistered", results({"--unregister"}, 0, environment)[10]);
    EXPECT_EQ(before, dump());
}

TEST_F(SuiteTest, AServerThatFailsCostsALine) {
    makeServers({"good", "hang", "crash", "good"});
    const Outcome outcome = control({"register"}, {"JUNTORA_REGISTRAR_SECONDS=4"});
    EXPECT_EQ(1, outcome.code);
    const Lines words{"registered", "failed", "not confirmed", "registered"};
    std::istringstream lines(outcome.output);
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        ASSERT_LT(count, words.size());
        EXPECT_TRUE(line.starts_with(words[count] + "  ")) << line;
    }
    EXPECT_EQ(words.size(), count);
    EXPECT_NE(outcome.errors.find("It had not ended after 4 s and was killed."),
              outcome.errors.npos)
        << outcome.errors;
    EXPECT_EQ(outcome.errors.find('\x1b'), outcome.errors.npos) << "no bar without a terminal";

    fs::remove_all(root() + "/tools/voltara");
    fs::create_directories(root() + "/tools/voltara");
    makeServers({"good"});
    for (const std::string seconds : {"0", "3601", "4s"}) {
        const Outcome told = control({"register"}, {"JUNTORA_REGISTRAR_SECONDS=" + seconds});
        EXPECT_EQ(0, told.code) << told.errors;
        EXPECT_NE(told.errors.find("is no number from 1 to 3600"), told.errors.npos) << seconds;
    }
}

TEST_F(SuiteTest, ARunThatIsKilledIsMadeGoodByTheNext) {
    for (const std::string moment : {"early", "half", "late"}) {
        for (std::size_t place = 0; place < 3; ++place) {
            SCOPED_TRACE(moment + " in server " + std::to_string(place));
            fs::remove_all(root() + "/tools/voltara");
            fs::create_directories(root() + "/tools/voltara");
            Lines behaviours(3, "good");
            behaviours[place] = moment;
            makeServers(behaviours);
            const std::string mark = root() + "/log.fallen";
            const auto dumpAfter = [&](bool isKilled) {
                forgetEverything();
                isKilled ? static_cast<void>(fs::remove(mark))
                         : static_cast<void>(std::ofstream(mark) << "not this time");
                const int code = control({"register"}).code;
                EXPECT_EQ(isKilled ? 128 + SIGKILL : 0, code);
                if (isKilled) {
                    EXPECT_EQ(0, control({"register"}).code);
                }
                return dump();
            };
            const std::string whole = dumpAfter(false);
            EXPECT_NE(whole.find(classId(3)), whole.npos);
            EXPECT_EQ(whole, dumpAfter(true));
            EXPECT_EQ(0, control({"register", "--unregister"}).code);
            EXPECT_EQ(dump().find("6C1E9000"), std::string::npos);
        }
    }
}

TEST_F(SuiteTest, ARegistryThatRefusesHalfWayStopsNobody) {
    makeServers({"good", "good", "good"});
    ASSERT_EQ(0, control({"register"}, {ORDINARY}).code);
    const std::string whole = dump();
    forgetEverything();
    takeLog();
    fs::remove_all(root() + "/tools/voltara");
    fs::create_directories(root() + "/tools/voltara");
    makeServers({"good", "lock", "good"});
    EXPECT_EQ((Lines{"registered", "not confirmed", "not confirmed"}), results({}, 1, {ORDINARY}))
        << "nobody can tell";
    EXPECT_EQ(3U, takeLog().size());
    EXPECT_EQ(0, control({"associations", "--remove"}).code);
    EXPECT_EQ(1, control({"registry", "list", "HKCU"}).code) << "the registry is closed";
    setModes(0600);
    EXPECT_EQ(dump().find(classId(3)), std::string::npos) << "the last one had no luck";

    fs::remove_all(root() + "/tools/voltara");
    fs::create_directories(root() + "/tools/voltara");
    makeServers({"good", "good", "good"});
    EXPECT_EQ(0, control({"register"}, {ORDINARY}).code);
    EXPECT_EQ(whole, dump());
}

TEST_F(SuiteTest, InADevelopmentTreeItsProgramsComeFirst) {
    const std::string folder = root() + "/wint";
    fs::create_directories(folder);
    fs::copy_file(ProgramFolder() + "/juntoractl", folder + "/juntoractl");
    const std::string both = addServer("voltara", "good", 1);
    const std::string installed = addServer("voltara", "good", 2);
    fs::copy_symlink(root() + "/tools/voltara/good-" + classId(1), folder + "/good-" + classId(1));
    for (const std::string& file : {both, installed}) {
        std::ofstream(root() + "/share/voltara/registration/servers.txt", std::ios::app)
            << "simulation EXE voltara " << file << " LocalServer32 "
            << (file == both ? classId(1) : classId(2)) << "\n";
    }
    const auto folders = [&](const std::string& binaries) {
        ChildProcess process(folder + "/juntoractl", {"register", "--force", "--json"},
                             {{"BINROOTDIR=" + binaries}, "", false});
        std::istringstream lines(process.readAll());
        Lines found;
        for (std::string line; std::getline(lines, line);) {
            const json object = json::parse(line);
            EXPECT_EQ("registered", object["result"]) << line;
            const std::string path = object["path"];
            const std::string in = path.substr(0, path.rfind('\\'));
            found.push_back(in.substr(in.rfind('\\') + 1));
        }
        return found;
    };
    EXPECT_EQ((Lines{"wint", "voltara"}), folders(root()));
    EXPECT_EQ((Lines{"voltara", "voltara"}), folders(root() + "/lib")) << "another tree";

    fs::remove(root() + "/tools/voltara/good-" + classId(1));
    fs::remove(folder + "/good-" + classId(1));
    std::ofstream(folder + "/good-" + classId(1)) << "may not be run";
    ChildProcess process(folder + "/juntoractl", {"register", "--force"},
                         {{"BINROOTDIR=" + root()}, "", true});
    const std::string output = process.readAll();
    EXPECT_EQ(1, process.wait()) << output;
    EXPECT_TRUE(output.starts_with("failed ")) << output;
    const std::string errors = process.errors();
    EXPECT_NE(errors.find("\\wint\\" + both), errors.npos) << errors;
    EXPECT_NE(errors.find(" It could not be started. "), errors.npos) << errors;
}

TEST_F(SuiteTest, WrongTablesAreToldByFileAndLine) {
    const std::string id = classId(1);
    const std::string good = addServer("voltara", "good", 1);
    const std::string right = "simulation EXE voltara " + good + " LocalServer32 " + id;
    const std::string wrong[] = {"simulation EXE voltara x.exe LocalServer32",
                                 "analysis EXE voltara x.exe LocalServer32 " + id,
                                 "simulation exe voltara x.exe LocalServer32 " + id,
                                 "simulation EXE ../bin x.exe LocalServer32 " + id,
                                 "simulation EXE voltara \"\" LocalServer32 " + id,
                                 "simulation EXE voltara \"x.exe\"\" \"\"y\" LocalServer32 " + id,
                                 "simulation EXE voltara x.exe InprocServer32 " + id,
                                 "simulation EXE voltara x.exe LocalServer32 {" + id + "}",
                                 "simulation EXE voltara \"x.exe LocalServer32 " + id,
                                 "simulation EXE voltara \"x\"y LocalServer32 " + id,
                                 "simulation EXE voltara x\x01 LocalServer32 " + id,
                                 "simulation EXE voltara x\xff LocalServer32 " + id,
                                 right + " resident",
                                 right + " for ever"};
    std::string table = "# comment\r\n\n  " + right + "  # and more\n";
    for (const std::string& line : wrong) {
        table += line + "\n";
    }
    writeTable("servers.txt", table);
    const Outcome outcome = control({"register"});
    EXPECT_EQ(1, outcome.code);
    EXPECT_EQ(Lines{"good /regserver []"}, takeLog()) << "the line that is right counts";
    for (std::size_t i = 0; i < std::size(wrong); ++i) {
        const std::string place = "\\registration\\servers.txt:" + std::to_string(i + 4) + ": ";
        EXPECT_NE(outcome.errors.find(place), outcome.errors.npos) << wrong[i];
    }
    EXPECT_EQ(std::size(wrong), static_cast<std::size_t>(
                                    std::count(outcome.errors.begin(), outcome.errors.end(), '\n')))
        << outcome.errors;

    fs::remove(root() + "/share/voltara/registration/servers.txt");
    const Outcome missing = control({"register"});
    EXPECT_EQ(1, missing.code);
    EXPECT_NE(missing.errors.find("servers.txt: the file cannot be read"), missing.errors.npos);
    EXPECT_NE(control({"associations"}).errors.find("associations.txt"), std::string::npos);
}

}  // namespace
}  // namespace juntora::test
