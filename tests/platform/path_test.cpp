// Paths as texts, the current directory, and the names behind drives.
#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/drives.h"
#include "platform/files/paths.h"
#include "platform/files/status.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "tests/platform/FilesFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

std::string full(const std::string& path) {
    std::string buffer(path.size() + 5'000, '#');
    buffer.resize(GetFullPathNameA(path.c_str(), static_cast<DWORD>(buffer.size()), buffer.data()));
    return buffer;
}

std::string current() {
    char buffer[4096];
    return CurrentDirectory(buffer, sizeof buffer) == nullptr ? "none" : buffer;
}

TEST(PathTest, SplitsInEitherForm) {
    char drive[3], directory[256], name[256], extension[256];
    SplitPath("C:\\a b\\tool.v2.exe", drive, directory, name, extension);
    EXPECT_EQ("C:|\\a b\\|tool.v2|.exe",
              std::string(drive) + "|" + directory + "|" + name + "|" + extension);
    SplitPath("/usr/bin.d/tool", drive, directory, name, extension);
    EXPECT_EQ("|/usr/bin.d/|tool|",
              std::string(drive) + "|" + directory + "|" + name + "|" + extension);
    SplitPath(std::string(100'000, 'x').c_str(), nullptr, nullptr, name, nullptr);
    EXPECT_EQ(std::string(255, 'x'), name);
}

TEST(PathTest, AbsolutePathsAreResolvedByTheirTextAlone) {
    const std::vector<std::pair<std::string, std::string>> rows{
        {"/home/me/x", "C:\\home\\me\\x"},
        {"\\home\\me\\x", "C:\\home\\me\\x"},
        {"c:/No/Such//Place\\", "c:\\No\\Such\\Place\\"},
        {"C:\\", "C:\\"},
        {"/", "C:\\"},
        {"C:\\a\\.\\b\\..\\c", "C:\\a\\c"},
        {"C:\\a\\..\\", "C:\\"},
        {"C:\\..\\..\\a\\.", "C:\\a"},
        {"X:\\a\\b\\..", "X:\\a"},
        {"d:", "d:\\"},
        {"d:x\\..\\y", "d:\\y"},
        {"1:x", "1:\\x"},
        {"C:\\.../.. x/a. ", "C:\\...\\.. x\\a. "},
        {"C:\\\x01\x1f\\\x80\xff", "C:\\\x01\x1f\\\x80\xff"},
        {"//server//share/./a/../../..", "\\\\server\\share\\"},
        {"\\\\\\server\\share", "\\\\server\\share"},
        {"\\\\server\\share\\", "\\\\server\\share\\"},
        {"\\\\server\\share\\a\\", "\\\\server\\share\\a\\"},
        {"\\\\server", "\\\\server"},
        {"\\\\server\\", "\\\\server\\"},
        {"\\\\server\\..\\..\\a", "\\\\server\\..\\a"},
        {"////", "\\\\"},
    };
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(expected, full(path)) << path;
    }
}

TEST(PathTest, LengthsAndBuffersOfEverySize) {
    EXPECT_EQ(0U, GetFullPathNameA("", 0, nullptr));
    EXPECT_EQ(ERROR_INVALID_NAME, GetLastError());
    EXPECT_EQ(0U, GetFullPathNameA(nullptr, 0, nullptr));
    for (const DWORD length : {255U, 259U, 260U, 520U, 100'000U}) {
        const std::string path = "C:\\" + std::string(length - 3, 'x');
        std::string buffer(length + 1, '#');
        EXPECT_EQ(length + 1, GetFullPathNameA(path.c_str(), length, buffer.data()));
        EXPECT_EQ(std::string(length + 1, '#'), buffer) << "too small, and so not touched";
        EXPECT_EQ(length, GetFullPathNameA(path.c_str(), length + 1, buffer.data()));
        EXPECT_STREQ(path.c_str(), buffer.c_str());
    }
    std::string climbing = "C:\\a";
    for (int i = 0; i < 25'000; ++i) {
        climbing += "\\b\\..";
    }
    EXPECT_EQ("C:\\a", full(climbing));
}

TEST(PathTest, TitlesAreNamesOfFiles) {
    char title[16] = "before";
    EXPECT_EQ(0, GetFileTitleA("C:\\a b\\amp.v2.sch", title, sizeof title));
    EXPECT_STREQ("amp.v2.sch", title);
    EXPECT_EQ(0, GetFileTitleA("d:amp", title, 4)) << "just fits";
    EXPECT_STREQ("amp", title);
    EXPECT_EQ(4, GetFileTitleA("/a/out", title, 3));
    for (const char* none : {"", "a/", "a\\", "C:", "a*", "a[1]"}) {
        EXPECT_LT(GetFileTitleA(none, title, sizeof title), 0) << none;
    }
    EXPECT_LT(GetFileTitleA(nullptr, title, sizeof title), 0);
    EXPECT_LT(GetFileTitleA(std::string(100'000, 'x').c_str(), title, sizeof title), 0);
    EXPECT_STREQ("amp", title) << "nothing is written but a title that fits";
}

class DirectoryTest : public FilesFolder {};

TEST_F(DirectoryTest, RelativePathsStartAtTheCurrentDirectoryOfTheirDrive) {
    makeFolder("Work/Sub");
    ASSERT_TRUE(SetCurrentDirectoryA(path("work\\SUB").c_str())) << "in any case of letters";
    EXPECT_EQ(path("Work/Sub"), current());
    EXPECT_EQ(path("Work/Sub/a"), full("a"));
    EXPECT_EQ(path("Work/Sub/a\\"), full("x/../a/"));
    EXPECT_EQ(path("Work"), full(".."));
    EXPECT_EQ(path("Work/Sub"), full("."));
    EXPECT_EQ(path("Work/Sub/a"), full("c:a"));
    EXPECT_EQ("d:\\a", full("d:a")) << "the root of a drive that is not the current one";
    char small[8];
    EXPECT_EQ(nullptr, CurrentDirectory(small, sizeof small));
    EXPECT_EQ(nullptr, CurrentDirectory(small, 0));
}

TEST_F(DirectoryTest, TheCurrentDirectoryIsOnTheNearestDrive) {
    makeFolder("Work/Sub");
    linkDrive('e', host("Work"));
    linkDrive('f', host("Work"));
    linkDrive('g', host(""));
    linkDrive('h', "/");
    linkDrive('q', host("nowhere"));
    ASSERT_TRUE(SetCurrentDirectoryA("G:\\work\\sub"));
    EXPECT_EQ("E:\\Sub", current());
    EXPECT_EQ("E:\\Sub\\a", full("a"));
    EXPECT_EQ("E:\\Sub\\a", full("e:a"));
    EXPECT_EQ("c:\\a", full("c:a"));
    EXPECT_EQ("C:\\a", full("\\a")) << "as everything on this machine means it";
    FileStatus status{};
    EXPECT_TRUE(ReadFileStatus("e:..\\Sub", &status)) << "where the text says";
    EXPECT_FALSE(ReadFileStatus("c:..\\Sub", &status));
    ASSERT_TRUE(SetCurrentDirectoryA(".."));
    EXPECT_EQ("E:\\", current());
    ASSERT_TRUE(SetCurrentDirectoryA("C:\\"));
    EXPECT_EQ("C:\\", current());
}

TEST_F(DirectoryTest, WhatCannotBeEnteredSaysWhyAndChangesNothing) {
    write("file", "");
    linkDrive('q', host("nowhere"));
    const std::string before = current();
    const std::vector<std::pair<std::string, DWORD>> rows{
        {path("none"), ERROR_FILE_NOT_FOUND},
        {path("none/none"), ERROR_PATH_NOT_FOUND},
        {path("file"), ERROR_PATH_NOT_FOUND},
        {path("file/none"), ERROR_PATH_NOT_FOUND},
        {"q:\\", ERROR_PATH_NOT_FOUND},
        {"p:\\", ERROR_PATH_NOT_FOUND},
        {"a:\\", ERROR_PATH_NOT_FOUND},
        {"\xe4:\\", ERROR_PATH_NOT_FOUND},
        {"\\\\server\\share", ERROR_BAD_NETPATH},
        {"\\\\", ERROR_BAD_NETPATH},
        {"", ERROR_PATH_NOT_FOUND},
        {"...", ERROR_FILE_NOT_FOUND},
        {std::string(256, 'x'), ERROR_FILENAME_EXCED_RANGE},
        {std::string(100'000, '/') + "x", ERROR_BAD_NETPATH},
        {std::string(100'000, 'x'), ERROR_FILENAME_EXCED_RANGE},
    };
    for (const auto& [name, error] : rows) {
        EXPECT_FALSE(SetCurrentDirectoryA(name.c_str()));
        EXPECT_EQ(error, GetLastError()) << name.substr(0, 300);
    }
    EXPECT_EQ(before, current());
    fs::current_path(makeFolder("gone"));
    fs::remove(host("gone"));
    EXPECT_EQ("none", current());
    EXPECT_EQ(0U, GetFullPathNameA("a", 0, nullptr)) << "no directory to start from";
}

class DriveTest : public FilesFolder {
protected:
    static std::string remote(const char* drive) {
        char name[100];
        DWORD capacity = sizeof name;
        const DWORD error = WNetGetConnectionA(drive, name, &capacity);
        return error == 0 ? name : std::to_string(error);
    }
    static std::string volume(const std::string& root) {
        char name[24];
        DWORD longest = 0;
        return GetVolumeInformationA(root.c_str(), &longest, name, sizeof name)
                   ? name + (longest >= 255 ? "" : " of " + std::to_string(longest))
                   : std::to_string(GetLastError());
    }
};

TEST_F(DriveTest, RemoteNamesComeFromTheMountTable) {
    linkDrive('d', makeFolder("net/parts"));
    linkDrive('e', makeFolder("with blank"));
    linkDrive('f', makeFolder("home"));
    linkDrive('g', makeFolder("local"));
    linkDrive('h', host("nowhere"));
    linkDrive('i', makeFolder("nets"));
    linkDrive('j', makeFolder("hidden"));
    std::string blank = host("with blank");
    blank.replace(blank.find(' '), 1, "\\040");
    writeMounts("/ " + host("net") + " cifs //server/lib\\040raries/\n/sub " + blank +
                " nfs4 nas:/export\n/ " + host("home") + " fuse.sshfs me@far:/home/me\n/ " +
                host("hidden") + " cifs //old/share\n/ " + host("hidden") + " ext4 /dev/sdb\n");
    EXPECT_EQ("\\\\server\\lib raries\\parts", remote("d:"));
    EXPECT_EQ("\\\\nas\\export\\sub", remote("E:")) << "a folder of what is exported";
    EXPECT_EQ("\\\\me@far\\home\\me", remote("F:"));
    EXPECT_EQ("2250", remote("g:"));
    EXPECT_EQ("1201", remote("h:"));
    EXPECT_EQ("2250", remote("i:")) << "beside a mount of which the name is its start";
    EXPECT_EQ("2250", remote("j:")) << "a later mount hides the one below";
    EXPECT_EQ("2250", remote("c:"));
    EXPECT_EQ("2250", remote("z:"));
    for (const char* none : {"", "d", "d:\\", "1:", "\xe4:", "\\\\server"}) {
        EXPECT_EQ("1200", remote(none)) << none;
    }
    char small[7] = "before";
    DWORD capacity = sizeof small;
    EXPECT_EQ(ERROR_MORE_DATA, WNetGetConnectionA("e:", small, &capacity));
    EXPECT_EQ(sizeof "\\\\nas\\export\\sub", capacity);
    EXPECT_STREQ("before", small);
    EXPECT_EQ(ERROR_INVALID_ADDRESS, WNetGetConnectionA("e:", nullptr, &capacity));
    fs::remove(host("mounts"));
    EXPECT_EQ("1222", remote("d:"));
}

TEST_F(DriveTest, SharesAreReachedWhereTheyAreMounted) {
    write("net/Parts/amp.lib", "x");
    writeMounts("/ " + host("net") + " smb3 //Server/Share\n");
    FileStatus status{};
    EXPECT_TRUE(ReadFileStatus("\\\\SERVER\\share\\parts\\AMP.lib", &status));
    EXPECT_TRUE(ReadFileStatus("//server/share/", &status)) << "a root";
    EXPECT_FALSE(ReadFileStatus("\\\\server\\share\\none", &status));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
    for (const char* none :
         {"\\\\server\\sharex\\a", "\\\\server\\", "\\\\server", "\\\\other\\share"}) {
        EXPECT_FALSE(ReadFileStatus(none, &status)) << none;
        EXPECT_EQ(ERROR_BAD_NETPATH, GetLastError()) << none;
    }
}

TEST_F(DriveTest, VolumesAreCalledAsThePlatformCallsThem) {
    linkDrive('d', makeFolder("stick/inner"));
    linkDrive('e', makeFolder("old"));
    linkDrive('f', makeFolder("user"));
    writeMounts("/ " + host("stick") + " vfat /dev/sdb1\n/ " + host("old") +
                " ntfs3 /dev/sdc1\n/ " + host("user") + " fuse.some-long-name-of-a-program x\n/ " +
                makeFolder("net") + " cifs //server/share\n");
    EXPECT_EQ("FAT32", volume("d:\\"));
    EXPECT_EQ("NTFS", volume("E:/"));
    EXPECT_EQ("FUSE", volume("F:\\"));
    EXPECT_EQ("EXT4", volume("C:\\"));
    EXPECT_EQ("CIFS", volume("\\\\server\\share\\"));
    EXPECT_EQ("53", volume("\\\\server\\other\\"));
    EXPECT_EQ("3", volume("z:\\"));
    for (const char* none : {"", "\\", "d:", "d:\\inner\\", "\\\\server\\share"}) {
        EXPECT_EQ("123", volume(none)) << none;
    }
    char small[4];
    EXPECT_FALSE(GetVolumeInformationA("E:\\", nullptr, small, sizeof small));
    EXPECT_EQ(ERROR_MORE_DATA, GetLastError());
}

}  // namespace
}  // namespace juntora::test
