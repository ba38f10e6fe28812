// The tables as they are shipped, the document types, and the cleaning up.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "registration/fileAssociations.h"
#include "registration/registryKeys.h"
#include "registration/serverTables.h"
#include "registration/userCleanUp.h"
#include "tests/registration/SuiteFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

class TablesTest : public SuiteFolder {
protected:
    TablesTest() { setenv("JUNTORA_ROOT", fs::path(ProgramFolder()).parent_path().c_str(), 1); }

    static std::string read(const std::string& key) {
        std::string text;
        ReadRegistryText(HKEY_CURRENT_USER, "Software\\Classes\\" + key, nullptr, &text);
        return text;
    }
    static std::string data() { return sandbox().runtimeFolder() + "/data/"; }
    static std::string content(const std::string& file) {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

TEST_F(TablesTest, TheServersAreOfTheirGroups) {
    const ServerTables tables = readServerTables();
    EXPECT_TRUE(tables.isWhole);
    const auto count = [](const std::vector<ServerRow>& rows, auto condition) {
        return std::ranges::count_if(rows, condition);
    };
    const auto kindIs = [](const char* kind) {
        return [kind](const ServerRow& row) { return row.kind == kind; };
    };
    EXPECT_EQ(5, count(tables.schematic, kindIs("DLL")));
    EXPECT_EQ(4, count(tables.schematic, kindIs("OCX")));
    EXPECT_EQ(1, count(tables.schematic, kindIs("EXE")));
    EXPECT_EQ(8, count(tables.simulation, kindIs("EXE")));
    EXPECT_EQ(10U, tables.schematic.size());
    EXPECT_EQ(8U, tables.simulation.size());
    EXPECT_EQ(10,
              count(tables.schematic, [](const auto& row) { return row.toolDir == "draftel"; }));
    EXPECT_EQ(7,
              count(tables.simulation, [](const auto& row) { return row.toolDir == "voltara"; }));
    EXPECT_EQ(1, count(tables.simulation, [](const auto& row) { return row.toolDir == "bin"; }));
    EXPECT_EQ(1, count(tables.schematic, [](const ServerRow& row) {
                  return row.kind == "OCX" && row.fileName.ends_with(".dll");
              }));
    const CleanUpTable cleanUp = readCleanUp();
    std::set<std::string> classes;
    for (const auto* rows : {&tables.schematic, &tables.simulation}) {
        for (const ServerRow& row : *rows) {
            classes.insert(row.classId);
            EXPECT_TRUE(std::ranges::count(cleanUp.identifiers, row.classId) == 1) << row.fileName;
        }
    }
    EXPECT_EQ(18U, classes.size());
}

TEST_F(TablesTest, TheDocumentTypesAreWrittenInOrder) {
    const AssociationTable table = readAssociations();
    EXPECT_TRUE(table.isWhole);
    const std::vector<KeyWrite> writes = associationWrites(table.rows);
    ASSERT_EQ(54U, writes.size());
    std::string extensions;
    std::set<std::string> classes;
    for (const KeyWrite& write : writes) {
        ASSERT_TRUE(write.key.starts_with("SOFTWARE\\CLASSES\\")) << write.key;
        const std::string key = write.key.substr(17);
        if (key.starts_with('.')) {
            extensions += key;
        } else {
            classes.insert(key.substr(0, key.find("16.6.0")));
        }
    }
    EXPECT_EQ(6U, classes.size());
    EXPECT_EQ(
        ".olb.sch.opj.olb.sch.cfg.drc.edn.exp.flp.map.net.pld.rpt.swp.upd.v.vhd.xrf.bom.log"
        ".prp.out.cir.sim.aap.log.lib.stl",
        extensions);
    const auto expectAt = [&](std::size_t at, const std::string& key, const std::string& value) {
        EXPECT_EQ("SOFTWARE\\CLASSES\\" + key, writes[at].key) << at;
        EXPECT_EQ(value, writes[at].value) << at;
    };
    expectAt(0, "Draftel.Project16.6.0", "Draftel Project 16.6.0");
    expectAt(1, "Draftel.Project16.6.0\\shell\\open\\command", "Draftel.exe \"%1\"");
    expectAt(4, ".opj", "Draftel.Project16.6.0");
    expectAt(26, "Voltara.Simulator16.6.0\\DefaultIcon", "Voltara.exe,0");
    expectAt(27, "Voltara.Simulator16.6.0\\shell\\open\\command", "Voltara.exe \"%1\"");
    const std::string type = "Voltara.Simulator16.6.0.out";
    expectAt(28, type, "Simulation Output File");
    expectAt(29, type + "\\DefaultIcon", "Voltara.exe,3");
    expectAt(30, type + "\\shell\\open\\command", "Voltara.exe /dde");
    expectAt(31, type + "\\shell\\open\\ddeexec", "[open(\"%1\")]");
    expectAt(32, ".out", type);
    expectAt(51, "Wavend.Stimulus16.6.0\\DefaultIcon", "Wavend.exe,1");

    ASSERT_EQ(1, setUserKeyDefaultValue("SOFTWARE\\CLASSES\\.olb", "somebody's"));
    EXPECT_EQ(1, registerFileAssociations());
    EXPECT_EQ("Sketchel.Drawing16.6.0", read(".OLB")) << "the last word counts";
    EXPECT_EQ("Draftel.Project16.6.0", read(".opj"));
    const std::string written = dump();
    EXPECT_EQ(1, registerFileAssociations());
    EXPECT_EQ(written, dump());
    chmod((sandbox().runtimeFolder() + "/registry/user.db").c_str(), 0622);
    EXPECT_EQ(1, registerFileAssociations()) << "nothing stops it";
    EXPECT_EQ(1, control({"associations"}).code);
    chmod((sandbox().runtimeFolder() + "/registry/user.db").c_str(), 0600);
}

TEST_F(TablesTest, TheDesktopOpensDocumentsByTheirTools) {
    const std::string package = data() + "mime/packages/voltara-documents.xml";
    const std::string foreign = data() + "applications/voltara-sim.desktop";
    const std::string stale = data() + "applications/voltara-old.desktop";
    fs::create_directories(data() + "applications");
    std::ofstream(foreign) << "[Desktop Entry]\nName=Mine\n";
    std::ofstream(stale) << desktopEntryText({".old", "Old", "Old", "/bin/old"});
    const Outcome outcome = control({"associations"});
    EXPECT_EQ(1, outcome.code);
    EXPECT_NE(outcome.errors.find(foreign), outcome.errors.npos) << outcome.errors;
    EXPECT_NE(outcome.output.find("54 keys written\n"), outcome.output.npos);
    EXPECT_FALSE(fs::exists(stale)) << "the suite has no such documents any more";

    const std::string entry = content(data() + "applications/voltara-opj.desktop");
    EXPECT_NE(entry.find("\nExec=\"" + ProgramFolder() + "/draftel\" %f\n"), entry.npos) << entry;
    EXPECT_NE(entry.find("\nMimeType=application/x-voltara-opj;\n"), entry.npos) << entry;
    const std::string types = content(package);
    EXPECT_NE(types.find("<mime-type type=\"application/x-voltara-cir\">"), types.npos) << types;
    EXPECT_NE(types.find("<glob pattern=\"*.cir\"/>"), types.npos) << types;
    EXPECT_EQ(types.find("aap"), types.npos) << "its tool is not installed";
    if (fs::exists("/usr/bin/update-mime-database")) {
        EXPECT_NE(content(data() + "mime/globs2").find("*.opj"), std::string::npos);
    }
    // A run that was killed has written its files, and made no index of them.
    fs::remove(data() + "mime/globs2");
    control({"associations"});
    EXPECT_EQ(fs::exists("/usr/bin/update-mime-database"), fs::exists(data() + "mime/globs2"));
    fs::create_directories(root() + "/bin");
    std::ofstream(root() + "/bin/update-mime-database") << "#!/bin/sh\nexit 3\n";
    fs::permissions(root() + "/bin/update-mime-database", fs::perms::owner_all);
    const Outcome failing =
        control({"associations"}, {"PATH=" + root() + "/bin:" + std::getenv("PATH")});
    EXPECT_EQ(1, failing.code);
    EXPECT_NE(failing.errors.find("update-mime-database has failed"), std::string::npos)
        << failing.errors;
    EXPECT_EQ(0, control({"associations", "--remove"}).code);
    EXPECT_FALSE(fs::exists(package));
    EXPECT_FALSE(fs::exists(data() + "applications/voltara-opj.desktop"));
    EXPECT_EQ("[Desktop Entry]\nName=Mine\n", content(foreign));
}

TEST_F(TablesTest, TheLastWordOnAnExtensionCounts) {
    AssociationTable table;
    const Words own{"type", "A", ".a", "A's", "a.exe", "voltara", "1"};
    const Words system{"system", ".a", "txtfile"};
    for (const Words& line : {own, system}) {
        ASSERT_EQ("", addAssociationRow(line, &table));
    }
    EXPECT_TRUE(desktopTypes(table.rows).empty()) << "the system has it back";
    ASSERT_EQ("", addAssociationRow(own, &table));
    EXPECT_EQ(1U, desktopTypes(table.rows).size());
}

TEST_F(TablesTest, NamesOfProgramsAreQuotedForTheDesktop) {
    const DesktopType type{".x", "A & B <\"C\">", "Tool", "/a b/100%/$HOME`\"\\"};
    EXPECT_NE(
        desktopEntryText(type).find("\nExec=\"/a b/100%%/\\\\$HOME\\\\`\\\\\"\\\\\\\\\" %f\n"),
        std::string::npos)
        << desktopEntryText(type);
    EXPECT_NE(mimePackageText({type}).find("<comment>A &amp; B &lt;&quot;C&quot;&gt;</comment>"),
              std::string::npos);
}

TEST_F(TablesTest, AnAdministratorsOwnClassesAreCleaned) {
    const CleanUpTable table = readCleanUp();
    EXPECT_TRUE(table.isWhole);
    EXPECT_EQ(162U, table.identifiers.size());
    EXPECT_EQ(162U, std::set(table.identifiers.begin(), table.identifiers.end()).size());
    ASSERT_EQ(130U, table.names.size());
    EXPECT_EQ(126U, std::set(table.names.begin(), table.names.end()).size());
    EXPECT_EQ((Lines{"Voltara.JuntoraComLink.16.6.0", "Voltara.JuntoraComLink",
                     "Voltara.JuntoraLibraryStatus.16.6.0", "Voltara.JuntoraLibraryStatus"}),
              Lines(table.names.begin(), table.names.begin() + 4));
    const Lines keys = table.keys();
    ASSERT_EQ(940U, keys.size());
    const std::string braced = "\\{" + table.identifiers[0] + "}";
    Lines first;
    for (const char* kind :
         {"CLSID", "Interface", "Typelib", "Wow6432Node\\CLSID", "Wow6432Node\\Interface"}) {
        first.push_back(std::string("Software\\Classes\\") + kind + braced);
    }
    EXPECT_EQ(first, Lines(keys.begin(), keys.begin() + 5));
    EXPECT_EQ("Software\\Classes\\Voltara.JuntoraComLink.16.6.0", keys[810]);

    ASSERT_EQ(1, setUserKeyDefaultValue("Software\\Classes\\CLSID\\{other}\\x", "stays"));
    ASSERT_EQ(1, setKeyDefaultValue(HKEY_LOCAL_MACHINE, keys[0].c_str(), "the machine's stays"));
    for (const char* container :
         {"Interface", "Typelib", "Wow6432Node\\CLSID\\y", "Wow6432Node\\Interface"}) {
        ASSERT_EQ(1, setUserKeyDefaultValue(
                         (std::string("Software\\Classes\\") + container).c_str(), "z"));
    }
    const std::string before = dump();
    for (const std::string& key : keys) {
        ASSERT_EQ(1, setUserKeyDefaultValue((key + "\\below\\deeper").c_str(), "goes"));
    }
    const std::string filled = dump();
    EXPECT_EQ(1, control({"clean"}, {ORDINARY}).code);
    setenv("MRN_TARVEX_DISABLE_ADMIN_MODE", "", 1);
    EXPECT_EQ(1, cleanUserRegistrations());
    EXPECT_EQ(filled, dump()) << "an ordinary user's stay";
    unsetenv("MRN_TARVEX_DISABLE_ADMIN_MODE");
    if (geteuid() != 0) {
        return;
    }
    const Outcome dry = control({"clean", "--dry-run"});
    EXPECT_EQ(936, std::count(dry.output.begin(), dry.output.end(), '\n'));
    EXPECT_EQ(filled, dump());
    EXPECT_EQ(dry.output, control({"clean"}).output);
    EXPECT_EQ(before, dump());
    EXPECT_EQ(1, cleanUserRegistrations()) << "what is not there is no failure";
    EXPECT_EQ(before, dump());

    writeTable("cleanup.txt", "wrong\n");
    const Lines own{"JUNTORA_ROOT=" + root()};
    const std::string told = control({"clean"}, own).errors;
    EXPECT_EQ(1, std::count(told.begin(), told.end(), '\n')) << told;
    writeTable("cleanup.txt", "name A.B\n");
    EXPECT_EQ(0, control({"clean"}, own).code);
    const std::string hive = sandbox().runtimeFolder() + "/registry/user.db";
    chmod(hive.c_str(), 0622);
    const Outcome closed = control({"clean"}, own);
    chmod(hive.c_str(), 0600);
    EXPECT_EQ(1, closed.code) << "nobody can tell what is there";
    EXPECT_NE(closed.errors.find("HKCU: "), std::string::npos) << closed.errors;
}

TEST_F(TablesTest, WrongLinesAreLeftOut) {
    AssociationTable associations;
    for (const Words& line :
         {Words{"class", "A", "b", "c.exe", "d"}, Words{"class", "A\\B", "b", "c.exe", "d", "1"},
          Words{"class", "A", "b", "../c.exe", "d", "1"},
          Words{"class", "A", "b", "c.exe", "d", "x"}, Words{"extension", "olb", "A"},
          Words{"extension", ".o*", "A"}, Words{"system", ".", "txtfile"},
          Words{"type", "A", ".b", "c", "d.exe", "e", "-"},
          Words{"type", "A", ".b", "c", "d.exe", "e", "1", "ddde"}, Words{"kind", ".b", "A"}}) {
        EXPECT_NE("", addAssociationRow(line, &associations)) << line[0] << line[1];
    }
    EXPECT_TRUE(associations.rows.empty());
    setenv("JUNTORA_ROOT", root().c_str(), 1);
    writeTable("cleanup.txt",
               "identifier 6C1E9000\nname CLSID\nname .sch\nname A\\B\nname\nidentifier " +
                   classId(1) + "\nname A.B\n");
    const CleanUpTable cleanUp = readCleanUp();
    EXPECT_FALSE(cleanUp.isWhole);
    EXPECT_EQ(Lines{classId(1)}, cleanUp.identifiers);
    EXPECT_EQ(Lines{"A.B"}, cleanUp.names);
}

}  // namespace
}  // namespace juntora::test
