// Files by the platform's paths: in any case of letters, listed, asked for their state, changed.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/files/search.h"
#include "platform/files/status.h"
#include "platform/files/wholeFile.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "tests/platform/FilesFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class FilesTest : public FilesFolder {
protected:
    static std::string content(const std::string& path) {
        char text[16] = "";
        return ReadFileStart(path.c_str(), text, sizeof text - 1) < 0
                   ? "error " + std::to_string(GetLastError())
                   : text;
    }
    static bool save(const std::string& path, const std::string& text) {
        return WriteWholeFile(path.c_str(), text.data(), text.size());
    }
    static DWORD attributes(const std::string& path) { return GetFileAttributesA(path.c_str()); }

    /// The names that a search gives, or "error" and its number.
    static Names search(const std::string& pattern) {
        WIN32_FIND_DATAA data{};
        const HANDLE handle = FindFirstFileA(pattern.c_str(), &data);
        if (handle == INVALID_HANDLE_VALUE) {
            return {"error " + std::to_string(GetLastError())};
        }
        Names names;
        do {
            names.emplace_back(data.cFileName);
        } while (FindNextFileA(handle, &data));
        EXPECT_EQ(ERROR_NO_MORE_FILES, GetLastError());
        EXPECT_TRUE(FindClose(handle));
        return names;
    }
};

TEST_F(FilesTest, TheExactSpellingWinsAtEachComponent) {
    write("Lib/Part.sch", "one");
    EXPECT_EQ("one", content(path("Lib/Part.sch")));
    EXPECT_EQ("one", content(path("LIB/part.SCH")));
    write("Lib/part.sch", "two");
    EXPECT_EQ("two", content(path("lib/part.sch")));
    EXPECT_EQ("one", content(path("lib/PART.SCH"))) << "of several the first by its bytes";
    write("lib/other", "three");
    EXPECT_EQ("error 2", content(path("lib/part.sch"))) << "the folder of the exact spelling only";
    EXPECT_EQ("one", content(path("LIB//Part.sch")));
    EXPECT_EQ("error 3", content(path("lob/Part.sch")));
    EXPECT_EQ("error 3", content(path("Lib/Part.sch/x")));
    write("Lib/\xc4.sch", "four");
    EXPECT_EQ("error 2", content(path("Lib/\xe4.sch"))) << "case is a matter of A to Z";
    fs::current_path(host("Lib"));
    EXPECT_EQ("four", content("c:\xc4.SCH"));
}

TEST_F(FilesTest, NewNamesStayAsWrittenAndOldOnesAreKept) {
    write("Lib/Part.sch", "a longer text");
    EXPECT_TRUE(save(path("LIB/PART.SCH"), "short"));
    EXPECT_TRUE(save(path("lib/New.sch"), "new"));
    EXPECT_EQ((Names{".", "..", "New.sch", "Part.sch"}), search(path("lib/*")));
    EXPECT_EQ("short", content(path("Lib/Part.sch")));
    EXPECT_FALSE(save(path("lob/New.sch"), "new"));
    EXPECT_EQ(ERROR_PATH_NOT_FOUND, GetLastError());
    EXPECT_FALSE(MakeDirectory(path("LIB").c_str()));
    EXPECT_EQ(ERROR_ALREADY_EXISTS, GetLastError());
    EXPECT_FALSE(MakeEmptyFile(path("Lib/new.SCH").c_str()));
    EXPECT_EQ(ERROR_ALREADY_EXISTS, GetLastError());
    EXPECT_TRUE(MakeDirectory(path("lib/Deep\\").c_str()));
    EXPECT_TRUE(MakeEmptyFile(path("LIB/deep/Empty").c_str()));
    EXPECT_EQ("", content(host("Lib/Deep/Empty")));
    EXPECT_FALSE(MakeDirectory(path("none/deep").c_str()));
    EXPECT_EQ(ERROR_PATH_NOT_FOUND, GetLastError());
    EXPECT_FALSE(MakeDirectory("y:\\deep"));
    EXPECT_TRUE(DeleteFileA(path("lib/deep/EMPTY").c_str()));
    EXPECT_FALSE(DeleteFileA(path("lib/deep/EMPTY").c_str()));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
    EXPECT_FALSE(DeleteFileA(path("lib/deep").c_str()));
    EXPECT_EQ(ERROR_ACCESS_DENIED, GetLastError());
    EXPECT_EQ("error 5", content(path("lib/deep")));
}

TEST_F(FilesTest, StatusTellsKindSizeAndTimes) {
    write("Lib/part", "12345");
    FileStatus status{};
    ASSERT_TRUE(SetFileTimes(path("lib/PART").c_str(), 1'000, 4'000'000'000));
    ASSERT_TRUE(ReadFileStatus(path("lib/PART").c_str(), &status));
    EXPECT_EQ(FileKind::REGULAR, status.kind);
    EXPECT_EQ(5, status.size);
    EXPECT_EQ(1'000, status.accessTime);
    EXPECT_EQ(4'000'000'000, status.modifyTime);
    EXPECT_NEAR(static_cast<double>(time(nullptr)), static_cast<double>(status.createTime), 60);
    ASSERT_TRUE(ReadFileStatus(path("lib").c_str(), &status));
    EXPECT_EQ(FileKind::DIRECTORY, status.kind);
    ASSERT_TRUE(ReadFileStatus("/dev/null", &status));
    EXPECT_EQ(FileKind::OTHER, status.kind);
    EXPECT_FALSE(SetFileTimes(path("lib/none").c_str(), 0, 0));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
}

TEST_F(FilesTest, AStatusIsNotToBeHadWithASeparatorAtTheEndButOfARoot) {
    makeFolder("Lib");
    linkDrive('d', host("Lib"));
    FileStatus status{};
    for (const std::string& name : {path("Lib\\"), path("Lib/"), path("lib\\")}) {
        EXPECT_FALSE(ReadFileStatus(name.c_str(), &status)) << name;
        EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
        EXPECT_EQ(FILE_ATTRIBUTE_DIRECTORY, attributes(name));
    }
    for (const char* root : {"C:\\", "/", "d:/", "D:\\\\", "d:"}) {
        EXPECT_TRUE(ReadFileStatus(root, &status)) << root;
    }
    for (const char* none : {"", "e:\\", "e:", "a:\\"}) {
        EXPECT_FALSE(ReadFileStatus(none, &status)) << none;
        EXPECT_EQ(ERROR_PATH_NOT_FOUND, GetLastError()) << none;
    }
}

TEST_F(FilesTest, AttributesComeFromModeAndName) {
    write("Lib/.hidden", "");
    write("Lib/locked", "");
    chmod(host("Lib/locked").c_str(), 0444);
    EXPECT_EQ(FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_HIDDEN, attributes(path("lib/.HIDDEN")));
    EXPECT_EQ(FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_READONLY, attributes(path("Lib/locked")));
    EXPECT_EQ(FILE_ATTRIBUTE_DIRECTORY, attributes(path("Lib/.")));
    EXPECT_EQ(FILE_ATTRIBUTE_NORMAL, attributes("/dev/null"));
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, attributes(path("Lib/locked/")));
    EXPECT_EQ(INVALID_FILE_ATTRIBUTES, attributes(path("none")));
}

TEST_F(FilesTest, ShortNamesAreTheLongOnes) {
    write("A long name.schematic", "");
    const std::string name = path("a LONG name.schematic");
    std::string buffer(name.size() + 1, '#');
    const auto size = static_cast<DWORD>(buffer.size());
    EXPECT_EQ(size, GetShortPathNameA(name.c_str(), buffer.data(), size - 1));
    EXPECT_EQ(std::string(size, '#'), buffer);
    EXPECT_EQ(size - 1, GetShortPathNameA(name.c_str(), buffer.data(), size));
    EXPECT_STREQ(name.c_str(), buffer.c_str());
    EXPECT_EQ(0U, GetShortPathNameA(path("none").c_str(), buffer.data(), size));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, GetLastError());
}

TEST_F(FilesTest, PatternsMatchAsThePlatformDoesIt) {
    for (const char* name : {"a", "B.c", "ab", "AB.C", "b.cc", ".x", "x.y.z", "ba*k\\slash"}) {
        write(std::string("all/") + name, "");
    }
    makeFolder("all/ab.d");
    const std::vector<std::pair<std::string, Names>> rows{
        {"*", {".", "..", ".x", "a", "ab", "AB.C", "ab.d", "B.c", "b.cc", "x.y.z"}},
        {"*.*", {".", "..", ".x", "a", "ab", "AB.C", "ab.d", "B.c", "b.cc", "x.y.z"}},
        {"AB", {"ab"}},
        {"ab*", {"ab", "AB.C", "ab.d"}},
        {"ab.*", {"ab", "AB.C", "ab.d"}},
        {"??", {"a", "ab"}},
        {"??.?", {".", ".x", "a", "ab", "AB.C", "ab.d", "B.c"}},
        {"?*.c", {"AB.C", "B.c"}},
        {"*z", {"x.y.z"}},
        {".", {"."}},
        {"a?b", {"error 2"}},
        {"b.ccc", {"error 2"}},
        {"", {"error 2"}},
        {std::string(100'000, '*') + 'q', {"error 2"}},
    };
    for (const auto& [pattern, names] : rows) {
        EXPECT_EQ(names, search(path("ALL/" + pattern))) << pattern.substr(0, 20);
    }
    fs::current_path(host("all"));
    EXPECT_EQ(Names{"x.y.z"}, search("X*"));
    EXPECT_EQ(Names{"x.y.z"}, search("c:X*"));
}

TEST_F(FilesTest, SearchesGiveStateAndLeaveNothingBehind) {
    write("lib/part", "12345");
    fs::create_symlink("nowhere", host("lib/dangling"));
    WIN32_FIND_DATAA data{};
    const HANDLE handle = FindFirstFileA(path("lib/*").c_str(), &data);
    ASSERT_NE(INVALID_HANDLE_VALUE, handle);
    EXPECT_EQ(FILE_ATTRIBUTE_DIRECTORY, data.dwFileAttributes);
    EXPECT_TRUE(FindNextFileA(handle, &data));
    EXPECT_TRUE(FindNextFileA(handle, &data));
    EXPECT_STREQ("part", data.cFileName);
    EXPECT_EQ(FILE_ATTRIBUTE_ARCHIVE, data.dwFileAttributes);
    EXPECT_EQ(5U, data.nFileSizeLow);
    EXPECT_FALSE(FindNextFileA(handle, &data));
    EXPECT_TRUE(FindClose(handle));
    for (const HANDLE none : {handle, INVALID_HANDLE_VALUE, HANDLE(nullptr)}) {
        EXPECT_FALSE(FindNextFileA(none, &data));
        EXPECT_EQ(ERROR_INVALID_HANDLE, GetLastError());
        EXPECT_FALSE(FindClose(none));
    }
    const auto descriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = descriptors();
    EXPECT_EQ(Names{"error 3"}, search(path("none/*")));
    EXPECT_EQ(Names{"error 3"}, search(path("lib/part/*")));
    EXPECT_EQ(Names{"error 3"}, search("w:\\*"));
    EXPECT_EQ(Names{"error 53"}, search("\\\\server\\share\\*"));
    EXPECT_EQ(Names{"part"}, search(path("lib/p*")));
    EXPECT_EQ(before, descriptors());
}

TEST_F(FilesTest, LargeFoldersAreListedWholeAndInOrder) {
    constexpr int COUNT = 1'000;
    Names expected{".", ".."};
    for (int i = 0; i < COUNT; ++i) {
        const std::string number = std::to_string(COUNT + i);
        expected.push_back((i % 2 == 0 ? "part" : "PART") + number);
        write("lib/" + expected.back(), "");
    }
    EXPECT_EQ(expected, search(path("lib/*")));
}

}  // namespace
}  // namespace juntora::test
