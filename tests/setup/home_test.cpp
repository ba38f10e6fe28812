// The installation's operations: home, search for setup files, users' copies, the program tree, and
// the environment of helpers.
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "setup/mrdCommon.h"
#include "setup/programTree.h"
#include "setup/setupSearch.h"
#include "setup/toolEnvironment.h"
#include "setup/userCopy.h"
#include "tests/setup/SetupFolder.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/apart.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using Paths = std::vector<std::string>;

constexpr char OWN_COPY[] = "home/mrdsetup/prod/16.6.0/a.ini";

class HomeTest : public SetupFolder {
protected:
    HomeTest() { write("root/tools/shared/a.ini", "shared"); }

    std::string shared() const { return platformPath("root/tools/shared/a.ini"); }
    /// The path, or "(none)".
    std::string ensure(const std::string& version = "16.6.0") const {
        std::string path;
        return EnsureUserCopy("prod", version, shared(), &path) ? path : "(none)";
    }
    static std::string search(const std::string& name) {
        std::string path;
        return SearchFile(name.c_str(), &path) ? path : "(none)";
    }
};

TEST_F(HomeTest, TheUsersTreeGoesBeforeTheInstallationsBeforeTheMachines) {
    EXPECT_EQ(search("prod/16.6.0/a.ini"), "(none)");
    for (const char* place : {"site", "root", "home"}) {
        const std::string path = std::string(place) + "/mrdsetup/prod/16.6.0/a.ini";
        write(path, place);
        EXPECT_EQ(search("prod/16.6.0/a.ini"), at(path));
    }
    std::string path;
    EXPECT_TRUE(FindSetupFile("prod", "a.ini", &path));
    EXPECT_EQ(path, at(OWN_COPY));
    EXPECT_TRUE(FindSetupFile("prod", nullptr, &path));
    EXPECT_EQ(path, at("home/mrdsetup/prod/16.6.0"));
    EXPECT_FALSE(FindSetupFile("prod", "b.ini", &path));
    set("HOME", "/" + std::string(2'100, 'x') + "/../.." + at("home"));
    EXPECT_EQ(search("prod/16.6.0/a.ini"), at("root/mrdsetup/prod/16.6.0/a.ini"));
    EXPECT_EQ(search(std::string(5'000, 'x')), "(none)");
}

TEST_F(HomeTest, TheSearchLibraryNeedsAHandleAndRoom) {
    write(OWN_COPY, "");
    char buffer[4] = "###";
    EXPECT_EQ(mrfSearch(0, "prod", buffer, sizeof buffer), MRF_NOT_INITIALISED);
    mrfHandle handle = 0;
    EXPECT_EQ(mrfInitialize(&handle), MRF_DONE);
    EXPECT_EQ(mrfSearch(handle, "prod", buffer, sizeof buffer), MRF_NO_ROOM);
    EXPECT_STREQ(buffer, "###");
    const std::string path = at("home/mrdsetup/prod");
    std::vector<char> exact(path.size() + 1);
    EXPECT_EQ(mrfSearch(handle, "prod", exact.data(), exact.size() - 1), MRF_NO_ROOM);
    EXPECT_EQ(mrfSearch(handle, "prod", exact.data(), exact.size()), MRF_DONE);
    EXPECT_EQ(exact.data(), path);
}

TEST_F(HomeTest, CollectsFoldersThatAreThere) {
    Paths dirs{"before"};
    EXPECT_TRUE(CollectSearchDirs("prod", "draft", "menus", &dirs));
    EXPECT_EQ(dirs, Paths{"before"});
    EXPECT_EQ(FirstSearchDir("prod", "draft", "menus"), "");
    for (const char* name :
         {"home/mrdsetup/prod/menus", "home/mrdsetup/prod/16.6.0/menus", "root/mrdsetup/prod/menus",
          "site/mrdsetup/prod/16.6.0/menus", "root/tools/draft/menus"}) {
        fs::create_directories(at(name));
    }
    write("root/mrdsetup/prod/16.6.0/menus", "a file");
    EXPECT_TRUE(CollectSearchDirs("prod", "draft", "menus", &dirs));
    EXPECT_EQ(dirs, (Paths{"before", at("home/mrdsetup/prod/16.6.0/menus"),
                           at("home/mrdsetup/prod/menus"), at("root/mrdsetup/prod/menus"),
                           at("site/mrdsetup/prod/16.6.0/menus"),
                           platformPath("root/tools") + "/draft/menus"}));
    EXPECT_EQ(FirstSearchDir("prod", "draft", "menus"), at("home/mrdsetup/prod/16.6.0/menus"));
    for (const char* name : {static_cast<const char*>(nullptr), ""}) {
        EXPECT_FALSE(CollectSearchDirs("prod", "draft", name, &dirs));
        EXPECT_EQ(FirstSearchDir("prod", "draft", name), "");
    }
    EXPECT_EQ(dirs.size(), 6U);
}

TEST_F(HomeTest, AHomeIsMadeOfItsParts) {
    const struct {
        const char* path;
        const char* drive;
        const char* found;  // HOME after FindSetupFile, after CollectSearchDirs and EnsureUserCopy.
        const char* ensured;
    } cases[] = {
        {"\\Users\\x", "D:", "C:\\Users\\x", "D:\\Users\\x"},
        {"\\Users\\x", "", "C:\\Users\\x", "C:\\Users\\x"},
        {"E:\\x", "D:", "E:\\x", "E:\\x"},
        {"", "D:", "(unset)", "(unset)"},
    };
    for (const auto& each : cases) {
        const auto prepare = [&each](const char* home) {
            home ? set("HOME", home) : unset("HOME");
            set("HOMEPATH", each.path);
            set("HOMEDRIVE", each.drive);
        };
        std::string path;
        prepare(nullptr);
        EXPECT_FALSE(FindSetupFile("prod", "a.ini", &path));
        EXPECT_EQ(get("HOME"), each.found);
        prepare(nullptr);
        Paths dirs;
        EXPECT_TRUE(CollectSearchDirs("prod", "draft", "menus", &dirs));
        EXPECT_EQ(get("HOME"), each.ensured);
        prepare(nullptr);
        EXPECT_FALSE(HasUserCopy("prod", "16.6.0", "/none/a.ini"));
        EXPECT_EQ(get("HOME"), "(unset)");
        EXPECT_EQ(ensure() != "(none)", *each.path != '\0');
        EXPECT_EQ(get("HOME"), each.ensured);
        prepare("");
        EXPECT_EQ(ensure() != "(none)", *each.path != '\0') << "an empty one is none";
        prepare(at("home").c_str());
        FindSetupFile("prod", "a.ini", &path);
        EXPECT_EQ(get("HOME"), at("home")) << "one that is there stays";
    }
}

TEST_F(HomeTest, ACopyIsMadeOnceAndNeverWrittenOver) {
    fs::permissions(at("root/tools/shared/a.ini"), fs::perms(0444));
    EXPECT_FALSE(HasUserCopy("prod", "16.6.0", "/none/a.ini"));
    EXPECT_EQ(ensure(), at(OWN_COPY));
    EXPECT_EQ(content(OWN_COPY), "shared");
    EXPECT_EQ(fs::status(at(OWN_COPY)).permissions(), fs::perms(0644)) << "it is to be written";
    EXPECT_TRUE(HasUserCopy("prod", "16.6.0", "/none/a.ini"));

    write(OWN_COPY, "own");
    EXPECT_EQ(ensure(), at(OWN_COPY));
    EXPECT_EQ(ensure("17.0"), at(OWN_COPY)) << "the one of the suite's own version is found first";
    EXPECT_EQ(content(OWN_COPY), "own");
    fs::rename(at("home/mrdsetup/prod/16.6.0"), at("home/mrdsetup/prod/15.0"));
    EXPECT_EQ(ensure("15.0"), at("home/mrdsetup/prod/15.0/a.ini"));
    EXPECT_EQ(content("home/mrdsetup/prod/15.0/a.ini"), "own");

    write("home/prod/9/a.ini", "");
    EXPECT_TRUE(HasUserCopy("prod", "9", "/none/a.ini")) << "a tree without a name above it";
    EXPECT_FALSE(HasUserCopy("prod", "8", "/none/a.ini"));
}

TEST_F(HomeTest, TheNameIsWhatStandsBehindTheLastSlash) {
    const struct {
        std::string source;
        std::string name;
    } cases[] = {
        {"C:\\none\\b.ini", "b.ini"},
        {"/none/b.ini", "b.ini"},
        {"C:\\none/c\\d.ini", "c\\d.ini"},
        {"d.ini", "d.ini"},
    };
    for (const auto& each : cases) {
        std::string path;
        const bool isMade = EnsureUserCopy("p", "1", each.source, &path);
        // There is no folder "c" for the third.
        EXPECT_EQ(isMade, each.name.find('\\') == std::string::npos) << each.source;
        EXPECT_EQ(isMade ? path : "", isMade ? at("home/mrdsetup/p/1/" + each.name) : "");
        EXPECT_TRUE(!isMade || contentOf(path).empty()) << "empty where nothing can be copied";
    }
    std::string path;
    EXPECT_FALSE(EnsureUserCopy("p", "1", "/none/", &path));
    EXPECT_FALSE(EnsureUserCopy("p", "1", "", &path));
}

TEST_F(HomeTest, AHomeThatCannotBeUsedIsPassedOver) {
    write("file", "");
    fs::create_symlink(at("nowhere"), at("dangling"));
    for (const char* home : {"none/at/all", "file", "dangling"}) {
        set("HOME", at(home));
        EXPECT_EQ(ensure(), temporary("16.6.0/a.ini")) << home;
        EXPECT_EQ(contentOf(temporary("16.6.0/a.ini")), "shared");
        writeFile(temporary("16.6.0/a.ini"), "own");
        EXPECT_EQ(ensure(), temporary("16.6.0/a.ini")) << home;
        EXPECT_EQ(contentOf(temporary("16.6.0/a.ini")), "own");
        fs::remove_all(temporary("16.6.0"));
    }
    EXPECT_EQ(fs::file_size(at("file")), 0U);
    EXPECT_FALSE(fs::exists(at("nowhere")));
}

TEST_F(HomeTest, AHomeThatMayNotBeWrittenIsPassedOver) {
    fs::permissions(temporary(""), fs::perms(0777));
    EXPECT_TRUE(apart([this] {
        becomeNobody();
        EXPECT_EQ(ensure(), temporary("16.6.0/a.ini"));
    }));
    EXPECT_EQ(fs::status(temporary("16.6.0")).permissions(), fs::perms(0700));
    fs::remove_all(temporary("16.6.0"));
    // One's own tree that is locked up is opened.
    fs::create_directories(at("home/mrdsetup/prod/16.6.0"));
    fs::permissions(at("home/mrdsetup/prod/16.6.0"), fs::perms(0500));
    if (geteuid() == 0) {
        ASSERT_EQ(chown(at("home/mrdsetup/prod/16.6.0").c_str(), NOBODY, NOBODY), 0);
    }
    EXPECT_TRUE(apart([this] {
        becomeNobody();
        EXPECT_EQ(ensure(), at(OWN_COPY));
    }));
}

TEST_F(HomeTest, WhatOthersPutAmongTheTemporaryFilesIsNotTaken) {
    set("HOME", at("none"));
    fs::create_directories(at("elsewhere"));
    fs::create_directory_symlink(at("elsewhere"), temporary("16.6.0"));
    EXPECT_EQ(ensure(), "(none)");
    fs::remove(temporary("16.6.0"));
    fs::create_directories(temporary("16.6.0"));
    fs::permissions(temporary("16.6.0"), fs::perms(0777));
    EXPECT_EQ(ensure(), "(none)");
    if (geteuid() == 0) {
        fs::permissions(temporary("16.6.0"), fs::perms(0755));
        ASSERT_EQ(chown(temporary("16.6.0").c_str(), NOBODY, NOBODY), 0);
        EXPECT_EQ(ensure(), "(none)");
    }
}

TEST_F(HomeTest, TheToolsAreBelowTheRootOrBesideTheProgram) {
    std::string tools;
    EXPECT_TRUE(GetToolsDir(&tools));
    EXPECT_EQ(tools, platformPath("root\\tools"));
    EXPECT_EQ(LocateProgramTree().root, platformPath("root"));
    EXPECT_EQ(LocateProgramTree().folderOf("draft"), platformPath("root\\tools\\draft\\"));
    set("BINROOTDIR", at("root"));
    EXPECT_EQ(LocateProgramTree().development, "");

    write("site/Voltara.ini", "of the machine");
    // A program outside of every installation, in a development tree.
    fs::create_directories(at("tree/WINT"));
    fs::copy(ProgramFolder() + "/setup_tree", at("tree/WINT"));
    ChildProcess program(at("tree/WINT/setup_tree"), {},
                         {{"JUNTORA_ROOT=", "BINROOTDIR=" + at("tree")}, "", false});
    EXPECT_EQ(program.readLine(), platformPath("tree\\WINT"));
    EXPECT_EQ(program.readLine(), platformPath("tree\\WINT\\..\\.."));
    EXPECT_EQ(program.readLine(), platformPath("tree\\wint\\"));
    EXPECT_EQ(program.readLine(), at("home/mrdsetup/Tarvex_Voltara/16.6.0/Voltara.ini"));
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(content("home/mrdsetup/Tarvex_Voltara/16.6.0/Voltara.ini"), "of the machine");
}

TEST_F(HomeTest, HelpersFindTheirRuntimesFirst) {
    set("PATH", "/usr/bin:/bin");
    set("TCL_LIBRARY", "x");
    set("TK_LIBRARY", "x");
    PrepareToolPath(nullptr);
    EXPECT_EQ(get("PATH"), "/usr/bin:/bin");
    EXPECT_EQ(get("TCL_LIBRARY"), "x");
    set("MRD_TARVEX_TCL_PATH", "");
    const std::string java = at("root") + "/tools/jre/bin/client";
    const std::string standard = at("root") + "/tools/tcltk/8.4/bin:" + java;
    PrepareToolPath(platformPath("root").c_str());
    EXPECT_EQ(get("PATH"), standard + ":/usr/bin:/usr/bin") << "whether it is there or not";
    EXPECT_EQ(get("TCL_LIBRARY"), "(unset)");
    EXPECT_EQ(get("TK_LIBRARY"), "(unset)");
    set("MRD_TARVEX_TCL_PATH", at("tcl"));
    PrepareToolPath(at("root").c_str());
    EXPECT_EQ(get("PATH"), at("tcl") + ":" + java + ":" + standard + ":/usr/bin:/usr/bin");
    unset("PATH");
    set("TCL_LIBRARY", "x");
    PrepareToolPath(at("root").c_str());
    EXPECT_EQ(get("PATH"), "(unset)");
    EXPECT_EQ(get("TCL_LIBRARY"), "x");
    EXPECT_FALSE(IsDotNetPresent());
}

}  // namespace
}  // namespace juntora::test
