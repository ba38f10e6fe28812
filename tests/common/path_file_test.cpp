// Paths on the file system: checks, listings, queries, and what lies on other machines.
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/PathCheck.h"
#include "common/PathName.h"
#include "platform/files/attributes.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

constexpr unsigned long UNTOUCHED = 4711;

std::string nameOf(const PathName& path) {
    CString name;
    path.getFileName(name);
    return static_cast<const char*>(name);
}

/// Works in a folder of its own.
class PathFileTest : public ::testing::Test {
protected:
    PathFileTest() : m_folder(m_sandbox.runtimeFolder() + "/files") {
        std::filesystem::create_directory(m_folder);
    }
    ~PathFileTest() override {
        unsetenv("XDG_CONFIG_HOME");
        unsetenv("JUNTORA_MOUNTS");
    }

    void write(const std::string& name, const std::string& content = "") const {
        std::ofstream(m_folder + "/" + name) << content;
    }
    PathName at(const std::string& name) const { return PathName((m_folder + "/" + name).c_str()); }

    struct Listing {
        int result;
        int count;
        std::unique_ptr<PathName[]> paths;
    };
    Listing list(const char* pattern, unsigned long mustHave = 0,
                 unsigned long mustNotHave = 0) const {
        PathName* paths = nullptr;
        int count = -1;
        const int result = at("").listDirectory(pattern, &paths, &count, mustHave, mustNotHave);
        EXPECT_EQ(count > 0, paths != nullptr);
        return {result, count, std::unique_ptr<PathName[]>(paths)};
    }

    DesktopSandbox m_sandbox;
    std::string m_folder;
};

TEST(PathCheckTest, KnowsWhatEachKindAllows) {
    const std::string long255 = "C:\\a\\" + std::string(255, 'n');
    const struct {
        std::string path;
        int shortNames;  // The result, or the error where it is 0.
        int longNames;
        int posix;
    } cases[] = {
        {"C:\\DIRECTOR\\EIGHTCHR.TXT", 1, 1, 817},
        {"C:\\", 1, 1, 817},
        {"C:\\NINECHARS", 816, 1, 817},
        {"C:\\NINECHARS.TEXT", 816, 1, 817},
        {"C:\\A.TEXT", 815, 1, 817},
        {"C:\\A.B.C", 823, 1, 817},
        {"C:\\A.", 1, 1, 817},
        {"C:\\.A", 0, 1, 817},
        {"C:\\A B", 817, 1, 817},
        {"C:\\A+B", 817, 1, 817},
        {"C:\\A\x1F", 817, 817, 817},
        {"C:\\A\x7F\xE4", 1, 1, 817},
        {"C:\\A?", 817, 817, 817},
        {"1:\\A", 0, 0, 817},
        {"\\\\A long server\\and share\\A", 1, 1, 1},
        {"\\\\s\\share\\A|", 817, 817, 817},
        {long255, 816, 1, 817},
        {long255 + "n", 816, 824, 817},
        {"", -1, -1, -1},
    };
    for (const auto& each : cases) {
        const PathName path(each.path.c_str());
        for (int kind = FILE_SYSTEM_FAT_SHORT; kind <= FILE_SYSTEM_POSIX; ++kind) {
            const int expected = kind == FILE_SYSTEM_FAT_SHORT ? each.shortNames
                                 : kind == FILE_SYSTEM_POSIX   ? each.posix
                                                               : each.longNames;
            unsigned long error = UNTOUCHED;
            const int result = path.checkForKind(kind, &error);
            EXPECT_EQ(result, expected > 1 ? 0 : expected) << each.path << " kind " << kind;
            EXPECT_EQ(error, expected > 1 ? expected : UNTOUCHED) << each.path << " kind " << kind;
            EXPECT_EQ(path.checkForKind(kind, nullptr), result);
        }
    }
}

TEST(PathCheckTest, KnowsKindsAndCharacters) {
    EXPECT_EQ(fileSystemKind("fat", 12), FILE_SYSTEM_FAT_SHORT);
    EXPECT_EQ(fileSystemKind("FAT", 13), FILE_SYSTEM_FAT_LONG);
    EXPECT_EQ(fileSystemKind("fat32", 12), FILE_SYSTEM_FAT32);
    EXPECT_EQ(fileSystemKind("nwcompa", 255), FILE_SYSTEM_NETWARE);
    EXPECT_EQ(fileSystemKind("NWCOMPAT", 255), FILE_SYSTEM_NETWARE);
    EXPECT_EQ(fileSystemKind("Posix", 255), FILE_SYSTEM_POSIX);
    EXPECT_EQ(fileSystemKind("EXT4", 255), FILE_SYSTEM_FAT_LONG);
    const auto legal = [](int kind, bool (*isLegal)(char, int)) {
        std::string characters;
        for (int c = 0; c < 128; ++c) {
            if (!isLegal(static_cast<char>(c), kind)) {
                characters += static_cast<char>(c < ' ' ? '^' : c);
            }
        }
        EXPECT_TRUE(isLegal('\xE4', kind));
        return characters;
    };
    const std::string controls(32, '^');
    EXPECT_EQ(legal(FILE_SYSTEM_FAT_SHORT, isLegalNameCharacter), controls + " \"*+,/:;<=>?[\\]|");
    EXPECT_EQ(legal(FILE_SYSTEM_NTFS, isLegalNameCharacter), controls + "\"*/:<>?\\|");
    EXPECT_EQ(legal(FILE_SYSTEM_FAT_SHORT, isLegalPathCharacter), controls + " \"*+,;<=>?[]|");
    EXPECT_EQ(legal(FILE_SYSTEM_NTFS, isLegalPathCharacter), controls + "\"*<>?|");
    EXPECT_EQ(legal(FILE_SYSTEM_POSIX, isLegalPathCharacter), controls + "\"*:<>?\\|");
}

TEST_F(PathFileTest, ChecksByTheVolume) {
    unsigned long longest = 0;
    CString fileSystem;
    EXPECT_EQ(at("x").getVolumeInfo(&longest, &fileSystem), 1);
    EXPECT_GE(longest, 143U);
    EXPECT_FALSE(fileSystem.IsEmpty());
    EXPECT_EQ(at("x").getVolumeInfo(nullptr, &fileSystem), -1);
    EXPECT_EQ(PathName().getVolumeInfo(&longest, &fileSystem), -1);
    const struct {
        std::string path;
        int result;
        unsigned long error;
    } cases[] = {
        {"/a b.c.d", 1, UNTOUCHED},
        {"/a*b", 0, 817},
        {"/" + std::string(127, 'a') + "/" + std::string(129, 'b'), 1, UNTOUCHED},
        {"/" + std::string(127, 'a') + "/" + std::string(130, 'b'), 0, 825},
        {"1:\\a", -1, UNTOUCHED},
        {"\\\\nobody", -1, UNTOUCHED},
        {"\\\\nobody\\nothing\\a", -1, UNTOUCHED},
        {"", -1, UNTOUCHED},
    };
    for (const auto& each : cases) {
        unsigned long error = UNTOUCHED;
        EXPECT_EQ(PathName(each.path.c_str()).checkForVolume(&error), each.result) << each.path;
        EXPECT_EQ(error, each.error) << each.path;
        EXPECT_EQ(PathName(each.path.c_str()).checkForVolume(nullptr), each.result);
    }
}

TEST_F(PathFileTest, ListsByPatternAndAttributes) {
    EXPECT_EQ(list("*").result, 0) << "an empty directory";
    EXPECT_EQ(list("*").count, 0);
    write("board.opj");
    write("Board.DSN");
    write(".hidden");
    std::filesystem::create_directory(m_folder + "/designs");
    const auto names = [](const Listing& listing) {
        std::vector<std::string> found(static_cast<std::size_t>(std::max(listing.count, 0)));
        std::transform(listing.paths.get(), listing.paths.get() + found.size(), found.begin(),
                       nameOf);
        return found;
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(names(list("*")), (Names{".hidden", "Board.DSN", "board.opj", "designs"}));
    EXPECT_EQ(names(list("board.*")), (Names{"Board.DSN", "board.opj"}));
    EXPECT_EQ(names(list("*", FILE_ATTRIBUTE_DIRECTORY)), (Names{"designs"}));
    EXPECT_EQ(names(list("*", 0, FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_HIDDEN)),
              (Names{"Board.DSN", "board.opj"}));
    EXPECT_EQ(names(list("*", FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_HIDDEN)), (Names{".hidden"}));
    EXPECT_EQ(list("*", FILE_ATTRIBUTE_SYSTEM).result, 0);
    EXPECT_EQ(list("*.txt").result, 0);
    EXPECT_EQ(list("").result, -1);
    EXPECT_STREQ(list("*.opj").paths[0].c_str(), at("board.opj").c_str());

    PathName* none = nullptr;
    int count = 0;
    EXPECT_EQ(at("board.opj").listDirectory("*", &none, &count, 0, 0), -1);
    EXPECT_EQ(at("nothing").listDirectory("*", &none, &count, 0, 0), -1);
    EXPECT_EQ(PathName().listDirectory("*", &none, &count, 0, 0), -1);
    EXPECT_EQ(at("").listDirectory("*", nullptr, &count, 0, 0), -1);
    EXPECT_EQ(at("").listDirectory("*", &none, nullptr, 0, 0), -1);
}

TEST_F(PathFileTest, ListsMoreThanItHasPlacesFor) {
    for (const int size : {200, 201, 500}) {
        for (int i = 0; i < size; ++i) {
            write(std::to_string(1000 + i));
        }
        const Listing listing = list("*");
        EXPECT_EQ(listing.result, 1);
        ASSERT_EQ(listing.count, size);
        for (int i = 0; i < size; ++i) {
            EXPECT_EQ(nameOf(listing.paths[i]), std::to_string(1000 + i));
        }
    }
}

TEST_F(PathFileTest, TellsWhatIsThere) {
    write("board.opj", "12345");
    const PathName file = at("BOARD.opj");
    const PathName folder = at("");
    ASSERT_EQ(folder.getPath()[folder.length() - 1], '\\');
    EXPECT_TRUE(file.exists() && file.isFile() && !file.isDirectory());
    EXPECT_TRUE(folder.exists() && folder.isDirectory() && !folder.isFile());
    EXPECT_TRUE(PathName("/").isDirectory());
    EXPECT_EQ(file.fileSize(), 5);
    EXPECT_EQ(file.isHidden() + file.isSystem() + file.isCompressed(), 0);
    EXPECT_EQ(file.isArchive(), 1);
    EXPECT_EQ(file.isReadOnly(), 0);
    chmod((m_folder + "/board.opj").c_str(), 0444);
    EXPECT_EQ(file.isReadOnly(), 1);
    EXPECT_STREQ(file.getShortForm().c_str(), file.c_str());

    EXPECT_EQ(file.setTime(FileTime::ACCESS, 1'000'000), 0);
    EXPECT_EQ(file.setTime(FileTime::MODIFY, 5'000'000'000), 0);
    EXPECT_EQ(file.accessTime(), 1'000'000);
    EXPECT_EQ(file.modifyTime(), 5'000'000'000);
    const std::time_t before = std::time(nullptr);
    EXPECT_EQ(file.setTime(FileTime::MODIFY, 0), 0);
    EXPECT_GE(file.modifyTime(), before);
    EXPECT_EQ(file.accessTime(), 1'000'000);
    EXPECT_LE(file.createTime(), std::time(nullptr));
    EXPECT_EQ(file.setTime(FileTime::CREATE, 1), -1);
    for (const PathName& nothing : {at("none"), at("board.opj/x"), PathName()}) {
        EXPECT_FALSE(nothing.exists() || nothing.isFile() || nothing.isDirectory());
        EXPECT_EQ(nothing.fileSize(), -1);
        EXPECT_EQ(nothing.accessTime() + nothing.modifyTime() + nothing.createTime(), 0);
        EXPECT_EQ(nothing.setTime(FileTime::MODIFY, 1), -1);
        EXPECT_EQ(nothing.isReadOnly() + nothing.isHidden() + nothing.isArchive(), -3);
        EXPECT_TRUE(nothing.getShortForm().isEmpty());
    }
}

TEST_F(PathFileTest, MakesAndRemoves) {
    const PathName file = at("new.opj");
    EXPECT_EQ(file.removeFile(), 1);
    EXPECT_EQ(file.createEmpty(), 0);
    EXPECT_EQ(file.fileSize(), 0);
    write("new.opj", "kept");
    EXPECT_EQ(file.createEmpty(), 0);
    EXPECT_EQ(file.fileSize(), 4);
    EXPECT_EQ(file.makeDirectory(), 1);
    EXPECT_EQ(file.removeFile(), 0);
    EXPECT_FALSE(file.exists());

    const PathName folder = at("folder");
    EXPECT_EQ(folder.makeDirectory(), 0);
    EXPECT_EQ(folder.makeDirectory(), 1);
    EXPECT_EQ(folder.createEmpty(), 1);
    EXPECT_EQ(folder.removeFile(), 1);
    EXPECT_TRUE(folder.isDirectory());
    EXPECT_EQ(at("none/x").makeDirectory(), 1);
    EXPECT_EQ(at("none/x").createEmpty(), 1);
    EXPECT_EQ(PathName().createEmpty() + PathName().makeDirectory() + PathName().removeFile(), 3);
}

TEST_F(PathFileTest, KnowsWhatLiesOnOtherMachines) {
    const std::string links = m_folder + "/juntora/drives";
    std::filesystem::create_directories(links);
    setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
    const std::string share = m_folder + "/share";
    std::filesystem::create_directories(share + "/work");
    const std::string target = std::filesystem::canonical(share).string();
    std::filesystem::create_directory_symlink(target + "/work", links + "/n:");
    std::filesystem::create_directory_symlink(m_folder, links + "/l:");
    write("mounts", "20 1 8:0 / / rw - ext4 /dev/x rw\n21 20 0:9 / " + target +
                        " rw - cifs //server/designs rw\n");
    setenv("JUNTORA_MOUNTS", (m_folder + "/mounts").c_str(), 1);

    const struct {
        const char* path;
        int state;
        const char* uncForm;
    } cases[] = {
        {"n:\\a\\b", 1, "\\\\server\\designs\\work\\a\\b"},
        {"\\\\server\\designs\\x", 1, "\\\\server\\designs\\x"},
        {"C:\\x", 0, ""},
        {"L:\\x", 0, ""},
        {"1:\\x", -1, ""},
        {"", -1, ""},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(PathName(each.path).networkState(), each.state) << each.path;
        EXPECT_STREQ(PathName(each.path).getUncForm().c_str(), each.uncForm) << each.path;
    }
    setenv("JUNTORA_MOUNTS", (m_folder + "/none").c_str(), 1);
    EXPECT_EQ(PathName("N:\\x").networkState(), -2);
}

}  // namespace
}  // namespace juntora::test
