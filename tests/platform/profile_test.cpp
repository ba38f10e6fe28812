// Private-profile files: what is read from any text, what a change leaves as it was, and who else
// may be at it meanwhile.
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "platform/files/privateProfile.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "tests/platform/FilesFolder.h"
#include "tests/support/apart.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

const std::string MANY(65'536, 'k');
const std::string TEXT =
    "; of all users\r\n"
    "[First]\r\n"
    "  Key = a value \r\n"
    "key=second\r\n"
    "Quoted=\"C:\\a b\"\r\n"
    "Apostrophes=' x '\r\n"
    "Pairs=\"a\";\"b\"\r\n"
    "Half=\"a\r\n"
    "Empty=\r\n"
    "Sum = 1=2 ; no comment\r\n"
    "no key\r\n"
    "=no name\r\n"
    "\r\n"
    "[ Second ]\r\n"
    ";Key=comment\r\n"
    "[no section\r\n"
    "Number = -12x\r\n"
    "[]\r\n"
    "[FIRST] behind\r\n"
    "Later=yes\r\n"
    "last=line";

class ProfileTest : public FilesFolder {
protected:
    static constexpr char UNTOUCHED = '#';

    struct Read {
        DWORD length = 0;
        DWORD error = 0;
        std::string buffer;  ///< All of it.
    };
    /// Null for empty names.
    Read read(const char* section, const char* key, const char* standard, DWORD size) const {
        // On the heap, so that a sanitizer sees what is written behind it.
        std::vector<char> buffer(size, UNTOUCHED);
        SetLastError(0);
        const DWORD length = GetPrivateProfileStringA(section, key, standard, buffer.data(), size,
                                                      path("f.ini").c_str());
        return {length, GetLastError(), {buffer.begin(), buffer.end()}};
    }
    std::string value(const char* section, const char* key) const {
        const Read got = read(section, key, "(none)", 100'000);
        return got.buffer.substr(0, got.length);
    }
    DWORD set(const char* section, const char* key, const char* text,
              const std::string& name = "f.ini") const {
        SetLastError(0);
        const BOOL isDone = WritePrivateProfileStringA(section, key, text, path(name).c_str());
        EXPECT_EQ(isDone != 0, GetLastError() == 0);
        return GetLastError();
    }
    std::string content(const std::string& name = "f.ini") const {
        std::ifstream stream(host(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(host("")), fs::directory_iterator()));
    }
};

TEST_F(ProfileTest, ReadsWhatPeopleWrite) {
    const struct {
        const char* section;
        const char* key;
        std::string expected;
    } cases[] = {
        {"first", "KEY", "a value"},
        {" First ", " key ", "a value"},
        {"First", "quoted", "C:\\a b"},
        {"First", "Apostrophes", " x "},
        {"First", "Pairs", "\"a\";\"b\""},
        {"First", "Half", "\"a"},
        {"First", "Empty", ""},
        {"First", "Sum", "1=2 ; no comment"},
        {"First", "no key", "(none)"},
        {"First", "", "(none)"},
        {"Second", "Key", "(none)"},
        {"Second", ";Key", "(none)"},
        {"Second", "number", "-12x"},
        {"no section", "Number", "(none)"},
        {"First", "Later", "yes"},
        {"first", "last", "line"},
        {"", "Later", "(none)"},
        {"Third", "Key", "(none)"},
    };
    for (const std::string mark : {"", "\xEF\xBB\xBF"}) {
        write("f.ini", mark + TEXT);
        for (const auto& each : cases) {
            EXPECT_EQ(value(each.section, each.key), each.expected) << each.section << each.key;
        }
        EXPECT_EQ(value(nullptr, "any"), "First\0Second\0"s);
        EXPECT_EQ(value("FIRST", nullptr),
                  "Key\0Quoted\0Apostrophes\0Pairs\0Half\0Empty\0Sum\0Later\0last\0"s);
        EXPECT_EQ(value("none", nullptr), "(none)");
    }
    write("f.ini", "\xEF\xBB\xBF[A]\nk=v\n"s);
    EXPECT_EQ(value("A", "k"), "v");
    write("f.ini", "[A\0]\n[B]\nk=v\0w\n\0=x\nl\0=y\n"s + MANY + "=" + MANY + "\nend=1");
    EXPECT_EQ(value(nullptr, nullptr), "B\0"s);
    EXPECT_EQ(value("B", nullptr), "k\0"s + MANY + "\0end\0"s);
    EXPECT_EQ(value("B", "k"), "v");
    EXPECT_EQ(value("B", MANY.c_str()), MANY);
    EXPECT_EQ(value("B", "end"), "1");
}

TEST_F(ProfileTest, TellsWhyNothingIsRead) {
    EXPECT_EQ(read("A", "k", "x", 9).error, ERROR_FILE_NOT_FOUND);
    write("f.ini", "[A]\nk=v\n");
    EXPECT_EQ(read("A", "k", "x", 9).error, 0U);
    EXPECT_EQ(read("A", "l", "x", 9).error, ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(read("A", "l", " x \t", 9).buffer.substr(0, 4), " x\0#"s);
    EXPECT_EQ(read("A", "l", nullptr, 3).buffer, "\0##"s);
    write("f.ini", "\xFF\xFE[\0A\0]\0"s);
    EXPECT_EQ(read("A", "k", "x", 9).error, ERROR_INVALID_DATA);
    fs::remove(host("f.ini"));
    makeFolder("f.ini");
    EXPECT_EQ(read("A", "k", "x", 9).error, ERROR_ACCESS_DENIED);
    fs::remove(host("f.ini"));
    ASSERT_EQ(mkfifo(host("f.ini").c_str(), 0600), 0);
    EXPECT_EQ(read("A", "k", "x", 9).error, ERROR_ACCESS_DENIED) << "and no waiting for a writer";
    EXPECT_EQ(set("A", "k", "v"), ERROR_ACCESS_DENIED);
}

TEST_F(ProfileTest, BuffersAreBoundedAndClosed) {
    write("f.ini", "[One]\nkey=value\nl=\n[Two]\n");
    const struct {
        const char* section;
        const char* key;
        std::string whole;
        bool isList;
    } cases[] = {
        {"One", "key", "value", false},
        {"One", "none", "standard", false},
        {"One", "l", "", false},
        {"One", nullptr, "key\0l\0"s, true},
        {nullptr, nullptr, "One\0Two\0"s, true},
        {"Two", nullptr, "standard", true},
    };
    for (const auto& each : cases) {
        const bool isNames = each.isList && each.whole.back() == '\0';
        const std::size_t needed = each.whole.size() + (each.isList && !isNames ? 2 : 1);
        for (std::size_t size = 0; size < needed + 3; ++size) {
            const Read got = read(each.section, each.key, "standard", static_cast<DWORD>(size));
            const std::size_t closing = std::min<std::size_t>(size, each.isList ? 2 : 1);
            const std::string text =
                each.whole.substr(0, size >= needed ? each.whole.npos : size - closing);
            std::string expected =
                text + std::string(size >= needed ? needed - text.size() : closing, '\0');
            expected.resize(size, UNTOUCHED);
            EXPECT_EQ(got.length, text.size()) << each.whole << size;
            EXPECT_EQ(got.buffer, expected) << each.whole << size;
            EXPECT_EQ(got.error == ERROR_MORE_DATA, size > 0 && size < needed)
                << each.whole << size;
        }
    }
    EXPECT_EQ(GetPrivateProfileStringA("One", "key", "", nullptr, 5, path("f.ini").c_str()), 0U);
}

TEST_F(ProfileTest, ReadsNumbers) {
    write("f.ini", "[N]\na=12\nb=-12x\nc=+7 8\nd=x\ne=\nf=99999999999\ng=-99999999999\nh=\"5\"\n");
    const struct {
        const char* key;
        int expected;
    } cases[] = {{"a", 12},
                 {"b", -12},
                 {"c", 7},
                 {"d", 0},
                 {"e", 0},
                 {"f", 2'147'483'647},
                 {"g", -2'147'483'647 - 1},
                 {"h", 5},
                 {"none", -3}};
    for (const auto& each : cases) {
        EXPECT_EQ(static_cast<int>(GetPrivateProfileIntA("n", each.key, -3, path("f.ini").c_str())),
                  each.expected)
            << each.key;
    }
    EXPECT_EQ(GetPrivateProfileIntA("n", "a", 4, path("none.ini").c_str()), 4U);
}

TEST_F(ProfileTest, ChangesNothingBesideWhatIsMeant) {
    const struct {
        std::string before;
        const char* section;
        const char* key;
        const char* value;
        std::string after;
    } cases[] = {
        {"; c\r\n[A]\r\n  k =  v  \r\nl=w\r\n", "a", "K", "new",
         "; c\r\n[A]\r\n  k =  new\r\nl=w\r\n"},
        {"[A]\nk=\n", "A", "k", "v", "[A]\nk=v\n"},
        {"[A]\nk=1", "A", "k", "2", "[A]\nk=2"},
        {"[A]\nk=1", "A", "l", "2", "[A]\nk=1\nl=2\n"},
        {"[A]\r\nk=1", "B", "l", "2", "[A]\r\nk=1\r\n\r\n[B]\r\nl=2\r\n"},
        {"[A]\nk=1\n\n; of B\n[B]\n", "A", "l", "2", "[A]\nk=1\nl=2\n\n; of B\n[B]\n"},
        {"[A]\n; of A\n; too\n\n; of B\n[B]\n", "A", "k", "1",
         "[A]\n; of A\n; too\nk=1\n\n; of B\n[B]\n"},
        {"[A]\nk=1\n[B]\n[A]\nl=2\n", "A", "m", "3", "[A]\nk=1\nm=3\n[B]\n[A]\nl=2\n"},
        {"[A]\nk=1\n[B]\n[A]\nl=2\n", "A", "l", "3", "[A]\nk=1\n[B]\n[A]\nl=3\n"},
        {"[A]\nk=1\nK=2\n", "A", "k", "3", "[A]\nk=3\nK=2\n"},
        {"[A]\nk=1\0x\ny\n"s, "A", "k", "2", "[A]\nk=2\ny\n"},
        {"", "A", "k", " \"v\" ", "[A]\nk=\"v\"\n"},
        {"\xEF\xBB\xBF", " A ", " k ", "v", "\xEF\xBB\xBF[A]\nk=v\n"},
        {"noise", "A", "k", "v", "noise\n\n[A]\nk=v\n"},
        // Deleting.
        {"[A]\nk=1\n; c\nK=2\nl=3\n", "A", "k", nullptr, "[A]\n; c\nl=3\n"},
        {"[A]\nk=1\n", "A", "none", nullptr, "[A]\nk=1\n"},
        {"[A]\nk=1\n; of B\n[B]\nl=2\n[a]\nm=3", "A", nullptr, nullptr, "; of B\n[B]\nl=2\n"},
        {"[A]\n; of A\n\n[B]\n", "A", nullptr, "ignored", "\n[B]\n"},
        {"[A]\nk=1\n", "none", nullptr, nullptr, "[A]\nk=1\n"},
    };
    for (const auto& each : cases) {
        write("f.ini", each.before);
        EXPECT_EQ(set(each.section, each.key, each.value), 0U);
        EXPECT_EQ(content(), each.after);
    }
    fs::remove(host("f.ini"));
    EXPECT_EQ(set("A", "k", nullptr), 0U);
    EXPECT_EQ(set("A", nullptr, nullptr), 0U);
    EXPECT_FALSE(fs::exists(host("f.ini"))) << "nothing is made to delete something in it";
}

TEST_F(ProfileTest, RefusesWhatCouldNotBeReadAgain) {
    const std::string before = "[A]\nk=v\n";
    write("f.ini", before);
    const struct {
        const char* section;
        const char* key;
        const char* value;
    } cases[] = {
        {nullptr, "k", "v"}, {"", "k", "v"},     {" ", "k", "v"},    {"A]", "k", "v"},
        {"A\n", "k", "v"},   {"A\rB", "k", "v"}, {"A", "", "v"},     {"A", "k=", "v"},
        {"A", ";k", "v"},    {"A", "[k", "v"},   {"A", "k\nl", "v"}, {"A", "k", "v\n[B]"},
        {"A", "k", "v\r"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(set(each.section, each.key, each.value), ERROR_INVALID_PARAMETER);
    }
    EXPECT_EQ(content(), before);
    EXPECT_EQ(set("A", "k", "v", "none/f.ini"), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(WritePrivateProfileStringA("A", "k", "v", nullptr), 0);
    write("f.ini", "\xFE\xFF\0["s);
    EXPECT_EQ(set("A", "k", "v"), ERROR_INVALID_DATA);
    EXPECT_EQ(content(), "\xFE\xFF\0["s);
}

TEST_F(ProfileTest, LinksStayLinksAndRightsStay) {
    makeFolder("other");
    write("other/real.ini", "[A]\n");
    fs::permissions(host("other/real.ini"), fs::perms(0640));
    fs::create_symlink("other/real.ini", host("f.ini"));
    EXPECT_EQ(set("A", "k", "v"), 0U);
    EXPECT_TRUE(fs::is_symlink(host("f.ini")));
    EXPECT_EQ(content("other/real.ini"), "[A]\nk=v\n");
    EXPECT_EQ(fs::status(host("other/real.ini")).permissions(), fs::perms(0640));
    EXPECT_EQ(set("A", "k", "w", "OTHER/Real.INI"), 0U) << "in any case of letters";
    EXPECT_EQ(content(), "[A]\nk=w\n");

    fs::remove(host("f.ini"));
    fs::create_symlink("other/new.ini", host("f.ini"));
    EXPECT_EQ(set("A", "k", "v"), 0U);
    EXPECT_EQ(content("other/new.ini"), "[A]\nk=v\n");
}

TEST_F(ProfileTest, AFailedWriteLeavesTheFileAsItWas) {
    const std::string before = "[A]\nk=v\n";
    write("f.ini", before);
    const std::size_t count = entries();
    fs::permissions(host(""), fs::perms(0777));
    fs::permissions(host("f.ini"), fs::perms(0444));
    EXPECT_TRUE(apart([&] {
        becomeNobody();
        EXPECT_EQ(set("A", "k", "w"), ERROR_ACCESS_DENIED) << "though its folder would allow it";
    }));
    fs::permissions(host(""), fs::perms(0755));
    fs::permissions(host("f.ini"), fs::perms(0666));
    EXPECT_TRUE(apart([&] {
        becomeNobody();
        EXPECT_EQ(set("A", "k", "w"), ERROR_ACCESS_DENIED) << "nothing can be put into its place";
        EXPECT_EQ(value("A", "k"), "v");
    }));
    EXPECT_TRUE(apart([&] {
        // As on a full disk, a part can be written, and the rest fails.
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{1'000, 1'000};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        EXPECT_NE(set("A", "k", MANY.c_str()), 0U);
    }));
    EXPECT_EQ(content(), before);
    EXPECT_EQ(entries(), count) << "no half of a file is left";
}

TEST_F(ProfileTest, ALargeFileIsAFileLikeAnyOther) {
    std::string text = "[A]\n";
    while (text.size() < 50'000'000) {
        text.append("key").append(std::to_string(text.size())).append("=").append(100, 'v') += '\n';
    }
    write("f.ini", text + "[B]\nlast=1\n");
    EXPECT_EQ(value("B", "last"), "1");
    EXPECT_EQ(set("B", "last", "2"), 0U);
    EXPECT_EQ(value("b", "LAST"), "2");
    EXPECT_EQ(fs::file_size(host("f.ini")), text.size() + 11);
}

TEST_F(ProfileTest, WritersLoseNothingAndReadersSeeWholeFiles) {
    constexpr int WRITERS = 8;
    constexpr int WRITES = 1'000;
    const auto key = [](int writer, int i) {
        return "w" + std::to_string(writer) + "k" + std::to_string(i);
    };
    write("f.ini", "[A]\n; kept\nanchor=there\n[B]\nend=1");
    std::vector<pid_t> writers;
    writers.reserve(WRITERS);
    for (int writer = 0; writer < WRITERS; ++writer) {
        writers.push_back(startApart([&] {
            for (int i = 0; i < WRITES && !HasFailure(); ++i) {
                EXPECT_EQ(set("A", key(writer, i).c_str(), std::to_string(i).c_str()), 0U);
            }
        }));
    }
    int reads = 0;
    for (const pid_t writer : writers) {
        int status = 0;
        for (; waitpid(writer, &status, WNOHANG) == 0; ++reads) {
            ASSERT_EQ(value("A", "anchor"), "there");
            ASSERT_EQ(value("B", "end"), "1");
        }
        EXPECT_EQ(status, 0);
    }
    EXPECT_GT(reads, 0);
    const std::string text = content();
    for (int writer = 0; writer < WRITERS; ++writer) {
        for (int i = 0; i < WRITES; ++i) {
            const std::string line = key(writer, i) + "=" + std::to_string(i) + "\n";
            ASSERT_NE(text.find("\n" + line), std::string::npos) << line;
        }
    }
    EXPECT_TRUE(text.starts_with("[A]\n; kept\nanchor=there\n"));
    EXPECT_TRUE(text.ends_with("\n[B]\nend=1"));
}

}  // namespace
}  // namespace juntora::test
