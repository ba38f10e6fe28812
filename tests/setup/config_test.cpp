// The suite's settings: which file holds them, and values with the shorthand of path lists.
#include <filesystem>
#include <string>
#include <vector>

#include "platform/kernel/sync.h"
#include "platform/registry/registry.h"
#include "setup/configFile.h"
#include "setup/configValues.h"
#include "setup/pathList.h"
#include "tests/setup/SetupFolder.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

constexpr char KEY[] = "SOFTWARE\\Meridan\\Interchange\\16.6.0\\ProductConfiguration\\Shared";
constexpr char OWN_FILE[] = "home/mrdsetup/Tarvex_Voltara/16.6.0/Voltara.ini";

class ConfigFileTest : public SetupFolder {
protected:
    ConfigFileTest() {
        for (const char* place : {"root/tools/voltara", "site", "named", "registered"}) {
            write(std::string(place) + "/Voltara.ini", place);
        }
    }
    /// Makes the key, and with a type its value.
    static void registerFile(DWORD type, const std::string& data) {
        HKEY key{};
        ASSERT_EQ(RegCreateKeyA(HKEY_LOCAL_MACHINE, KEY, &key), ERROR_SUCCESS);
        RegDeleteValueA(key, "VoltaraConfigFile");
        if (type != 0) {
            EXPECT_EQ(RegSetValueExA(key, "VoltaraConfigFile", type, data.data(),
                                     static_cast<DWORD>(data.size())),
                      ERROR_SUCCESS);
        }
        RegCloseKey(key);
    }
    /// What the user's copy is made of.
    std::string source() const {
        fs::remove_all(at("home/mrdsetup"));
        const std::string path = GetConfigFilePath();
        EXPECT_TRUE(path.empty() || path == at(OWN_FILE)) << path;
        EXPECT_EQ(fs::is_directory(at("home/mrdsetup/Tarvex_Voltara/backup")), !path.empty());
        return path.empty() ? "" : content(OWN_FILE);
    }
};

TEST_F(ConfigFileTest, ComesFromTheFirstPlaceThatIsSet) {
    EXPECT_EQ(source(), "root/tools/voltara");
    set("VOLTARAINIPATH", at("named/Voltara.ini"));
    EXPECT_EQ(source(), "named");
    set("VOLTARAINIPATH", at("named/none.ini"));
    EXPECT_EQ(source(), "");
    unset("VOLTARAINIPATH");
    set("JUNTORA_ROOT", at("root/tools"));
    EXPECT_EQ(source(), "") << "the machine's own is not tried where there is an installation";
}

TEST_F(ConfigFileTest, TheRegistryRulesAlone) {
    set("VOLTARAINIPATH", at("named/Voltara.ini"));
    const std::string path = platformPath("registered/Voltara.ini");
    // So many characters more, or one less, that change nothing.
    const auto dots = [](std::size_t count) {
        std::string steps;
        while (steps.size() + 1 < count) {
            steps += ".\\";
        }
        return steps;
    };
    const struct {
        DWORD type;
        std::string data;
        const char* source;
    } cases[] = {
        {REG_SZ, path + '\0', "registered"},
        {REG_EXPAND_SZ, path, "registered"},
        {REG_MULTI_SZ, path + "\0other\0\0"s, "registered"},
        {REG_DWORD, "abcd", ""},
        {REG_BINARY, path, ""},
        {REG_SZ, at("none.ini"), ""},
        {REG_SZ, "", ""},
        {REG_SZ, path.substr(0, 3) + dots(259 - path.size()) + path.substr(3) + '\0', "registered"},
        {REG_SZ, path.substr(0, 3) + dots(262 - path.size()) + path.substr(3) + '\0', ""},
        {0, "", ""},
    };
    for (const auto& each : cases) {
        registerFile(each.type, each.data);
        EXPECT_EQ(source(), each.source) << each.type << each.data;
    }
    ASSERT_EQ(RegDeleteKeyA(HKEY_LOCAL_MACHINE, KEY), ERROR_SUCCESS);
    EXPECT_EQ(source(), "named");
}

TEST_F(ConfigFileTest, TheCopyIsTheUsersOwnFromThenOn) {
    EXPECT_EQ(source(), "root/tools/voltara");
    write(OWN_FILE, "own");
    write("root/tools/voltara/Voltara.ini", "newer");
    EXPECT_EQ(GetConfigFilePath(), at(OWN_FILE));
    EXPECT_EQ(content(OWN_FILE), "own");
    unset("HOME");
    EXPECT_EQ(GetConfigFilePath(), platformPath("root/tools/voltara/Voltara.ini"));
}

/// With a file of settings that lies on the platform's own paths, "F:\c\Voltara.ini".
class PathListTest : public SetupFolder {
protected:
    PathListTest() {
        set("XDG_CONFIG_HOME", at("config"));
        fs::create_directories(at("config/juntora/drives"));
        fs::create_directories(at("f/c/d"));
        fs::create_directory_symlink(at("f"), at("config/juntora/drives/f:"));
        set("X", "D:\\p;\"E:\\q\"");
        write("root/tools/voltara/Voltara.ini", "");
        GetConfigFilePath();
    }
    ~PathListTest() override { unset("XDG_CONFIG_HOME"); }

    /// Below the home of the setting's file, in the platform's form.
    std::string own(const std::string& name) const {
        return platformPath("home/mrdsetup/Tarvex_Voltara/16.6.0/" + name);
    }
    void writeValue(const std::string& value) const { write(OWN_FILE, "[S]\nk=" + value + "\n"); }
    std::string storedValue() const {
        const std::string text = content(OWN_FILE);
        return text.starts_with("[S]\nk=") ? text.substr(6, text.size() - 7) : text;
    }
    static std::string read(DWORD size = 100'000, bool quote = false) {
        std::vector<char> buffer(size);
        const int result = GetConfigString("S", "k", "", buffer.data(), size, nullptr, quote);
        EXPECT_EQ(result != 0, size > 1 && buffer[0] != '\0');
        return size == 0 ? "" : buffer.data();
    }
};

TEST_F(PathListTest, ReadsShorthand) {
    set("SELF", "$SELF;a");
    set("EMPTIES", ";;");
    const struct {
        std::string value;
        std::string expanded;
    } cases[] = {
        {"\"C:\\a\";$X\\lib;.\\b", "C:\\a;D:\\p\\lib;E:\\q\\lib;" + own("b")},
        {"\"$x\"", "D:\\p;E:\\q"},
        {"\"a;b\"", "a;b"},
        {"\"a;\"b", "\"a;b"},
        {"a\";b\"", "a\";b"},
        {"\"\"a\"\";\"\"b", "a;b"},
        {"a;a;b;a;A", "a;b;a;A"},
        {"a;;a;", "a;a"},
        {"$NOT_SET_AT_ALL;$;a", "a"},
        {"$SELF\\b", "$SELF\\b;a\\b"},
        {"$EMPTIES", "$EMPTIES"},
        {".\\..\\.\\x\\.\\y", platformPath("home/mrdsetup/Tarvex_Voltara/x/.") + "\\y"},
        {"..\\..", platformPath("home/mrdsetup") + "\\"},
        {std::string(40, '.') + "\\x", std::string(40, '.') + "\\x"},
        {"./x;.x;..", "./x;.x;.."},
        {";;\"\";\"", ";;\"\";\""},
        {"\"\"\"", "\"\"\""},
        {"", ""},
    };
    for (const auto& each : cases) {
        writeValue(each.value);
        EXPECT_EQ(read(), each.expanded) << each.value;
    }
    std::string climbing;
    for (int i = 0; i < 40; ++i) {
        climbing += "..\\";
    }
    writeValue(climbing + "x");
    EXPECT_EQ(read(), "C:\\x") << "never above the drive";
    writeValue("$X;.\\b;c");
    EXPECT_EQ(read(1'000, true), "\"D:\\p\";\"E:\\q\";\"" + own("b") + "\";\"c\"");
}

TEST_F(PathListTest, OnlyBackslashesCountInThePathOfTheSettings) {
    set("HOME", "F:\\c\\d");
    writeValue("");
    const std::string path = GetConfigFilePath();
    EXPECT_EQ(path, "F:\\c\\d/mrdsetup/Tarvex_Voltara/16.6.0/Voltara.ini");
    for (const auto& [value, expanded] :
         {std::pair{".\\b", "F:\\c\\b"}, std::pair{"..\\b", "F:\\b"},
          std::pair{"..\\..\\b", "F:\\b"}}) {
        write("f/c/d/mrdsetup/Tarvex_Voltara/16.6.0/Voltara.ini", "[S]\nk="s + value);
        EXPECT_EQ(read(), expanded);
    }
}

TEST_F(PathListTest, ARelativeItemNeedsSettings) {
    fs::remove_all(at("root"));
    write("other.ini", "[S]\nk=.\\a;b;..\\c\n");
    char buffer[100];
    EXPECT_EQ(ReadPathList("S", "k", "", buffer, sizeof buffer, at("other.ini").c_str(), false), 1);
    EXPECT_STREQ(buffer, "b");
    EXPECT_EQ(read(), "") << "nor is there a file to be read";
}

TEST_F(PathListTest, BuffersAreBoundedByWholeItems) {
    writeValue("$X;ccc");
    const std::string whole = "D:\\p;E:\\q;ccc";
    for (DWORD size = 0; size < whole.size() + 3; ++size) {
        SetLastError(ERROR_SUCCESS);
        const std::string expected = size < 5    ? "$X;ccc"s.substr(0, size == 0 ? 0 : size - 1)
                                     : size < 10 ? "D:\\p"
                                     : size < 14 ? "D:\\p;E:\\q"
                                                 : whole;
        EXPECT_EQ(read(size), expected) << size;
        EXPECT_EQ(GetLastError(),
                  size > 0 && size <= whole.size() ? ERROR_MORE_DATA : ERROR_SUCCESS)
            << size;
    }
    SetLastError(ERROR_DISK_FULL);
    read(static_cast<DWORD>(whole.size() + 1));
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
}

TEST_F(PathListTest, WritesShorthandBack) {
    const std::string before = "$X\\lib;.\\b;\"C:\\plain\"";
    const std::string b = own("b");
    const struct {
        std::string given;
        std::string stored;
        bool quote = false;
    } cases[] = {
        {"D:\\p\\lib;E:\\q\\lib;" + b + ";C:\\plain", "$X\\lib;.\\b;C:\\plain"},
        {"d:\\P\\LIB;\"e:\\q\\lib\";" + b + ";new", "$X\\lib;.\\b;\"new\"", true},
        {"E:\\q\\lib;" + b + ";C:\\plain", ".\\b;C:\\plain"},
        {"C:\\plain;E:\\q\\lib;D:\\p\\lib", "C:\\plain;$X\\lib"},
        {"a;D:\\p\\lib;b;E:\\q\\lib;a", "a;$X\\lib;b;a"},
        {"$X", "D:\\p;E:\\q"},
        {"$X\\lib", "$X\\lib"},
        {".\\b", ".\\b"},
        {".\\b", "\".\\b\"", true},
        {"\"C:\\Plain\"", "\"C:\\Plain\"", true},
        {";;\"\"", ""},
        {"", ""},
    };
    for (const auto& each : cases) {
        writeValue(before);
        EXPECT_EQ(WriteConfigString("S", "k", each.given.c_str(), nullptr, each.quote), 1);
        EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
        EXPECT_EQ(storedValue(), each.stored) << each.given;
    }
    writeValue(before);
    EXPECT_EQ(WriteConfigString("S", "k", nullptr, nullptr, false), 1);
    EXPECT_EQ(storedValue(), "");
}

TEST_F(PathListTest, WhatIsReadCanBeWrittenBack) {
    const std::string before = "$X\\lib;.\\b;C:\\a b;C:\\c";
    for (const bool quote : {false, true}) {
        writeValue(before);
        const std::string whole = read(1'000, quote);
        WriteConfigString("S", "k", whole.c_str(), nullptr, quote);
        EXPECT_EQ(storedValue(), quote ? "$X\\lib;.\\b;\"C:\\a b\";\"C:\\c\"" : before);
        EXPECT_EQ(read(1'000, quote), whole);
    }
    writeValue("\"C:\\a\";\"C:\\b\"");
    EXPECT_EQ(read(), "C:\\a;C:\\b") << "these quotes are no pair around all of it";
    set("X", "D:\\p;;E:\\q;");
    writeValue("$X;C:\\c");
    WriteConfigString("S", "k", read().c_str(), nullptr, false);
    EXPECT_EQ(storedValue(), "$X;C:\\c") << "nobody misses what is empty";
}

TEST_F(PathListTest, LongListsAreWhole) {
    constexpr int ITEMS = 10'000;
    std::string value;
    std::string expanded;
    for (int i = 0; i < ITEMS; ++i) {
        const std::string name = "\\folder" + std::to_string(i);
        value += (i == 0 ? "$X" : ";$X") + name;
        expanded.append(i == 0 ? "D:\\p" : ";D:\\p").append(name).append(";E:\\q").append(name);
    }
    writeValue(value);
    EXPECT_EQ(read(1'000'000), expanded);
    WriteConfigString("S", "k", (expanded + ";new").c_str(), nullptr, false);
    EXPECT_EQ(storedValue(), value + ";new");
}

TEST_F(PathListTest, FailedWritesTellWhy) {
    const struct {
        const char* section;
        const char* key;
        const char* value;
        const char* file;
        DWORD error;
    } cases[] = {
        {nullptr, "k", "v", nullptr, ERROR_INVALID_PARAMETER},
        {"S", nullptr, "v", nullptr, ERROR_INVALID_PARAMETER},
        {"S", "k", "v\n[T]", nullptr, ERROR_INVALID_PARAMETER},
        {"S", "k", "v", "", ERROR_PATH_NOT_FOUND},
        {"S", "k", "v", "/none/none.ini", ERROR_PATH_NOT_FOUND},
    };
    writeValue("before");
    for (const auto& each : cases) {
        EXPECT_EQ(WriteConfigString(each.section, each.key, each.value, each.file, false), 1);
        EXPECT_EQ(GetLastError(), each.error);
    }
    EXPECT_EQ(storedValue(), "before");
}

TEST_F(PathListTest, ListsAndNumbersAndDefaults) {
    write(OWN_FILE, "[$X]\nn=7\n$X;b=1\n[T]\n");
    write("other.ini", "[O]\nk=$X\n");
    const std::string other = at("other.ini");
    const auto names = [](const char* section, const char* file, bool quote = false) {
        char buffer[100] = "before";
        const int result =
            GetConfigString(section, nullptr, "std", buffer, sizeof buffer, file, quote);
        const std::string text(buffer, sizeof buffer);
        return std::to_string(result) + text.substr(0, text.find("\0\0"s));
    };
    EXPECT_EQ(names(nullptr, nullptr, true), "1$X\0T"s) << "names are no paths";
    EXPECT_EQ(names("$X", nullptr), "1n\0$X;b"s);
    EXPECT_EQ(names("T", nullptr), "1std");
    EXPECT_EQ(names(nullptr, other.c_str()), "1O");
    EXPECT_EQ(names(nullptr, ""), "1"s + NO_SECTIONS)
        << "an empty name is looked up for values alone";
    EXPECT_EQ(GetConfigInt("$X", "N", -1, nullptr), 7);
    EXPECT_EQ(GetConfigInt("O", "k", -1, other.c_str()), 0);
    EXPECT_EQ(GetConfigInt("O", "none", -1, other.c_str()), -1);

    char buffer[100] = "before";
    EXPECT_EQ(GetConfigString("O", "k", "", buffer, sizeof buffer, other.c_str(), false), 1);
    EXPECT_STREQ(buffer, "D:\\p;E:\\q");
    EXPECT_EQ(GetConfigString("O", "none", "$X\\y", buffer, sizeof buffer, other.c_str(), false),
              1);
    EXPECT_STREQ(buffer, "D:\\p\\y;E:\\q\\y") << "what is written nowhere is expanded as well";
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(GetConfigString("O", "none", nullptr, buffer, sizeof buffer, other.c_str(), false),
              0);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(GetConfigStringDefault("$X", "n", "std", buffer, sizeof buffer), 1);
    EXPECT_STREQ(buffer, "7");
    EXPECT_EQ(GetConfigStringDefault("$X", nullptr, "std", buffer, sizeof buffer), 1);
    EXPECT_STREQ(buffer, "std");
    EXPECT_EQ(GetConfigString("$X", "n", "", nullptr, 9, nullptr, false), 0);
    for (DWORD size = 0; size < 2; ++size) {
        std::vector<char> small(size, '#');
        EXPECT_EQ(GetConfigString("$X", nullptr, "", small.data(), size, nullptr, false), 0);
        EXPECT_EQ(GetConfigString(nullptr, nullptr, "", small.data(), size, nullptr, true), 0);
        EXPECT_EQ(std::string(small.begin(), small.end()), std::string(size, '\0'));
    }
}

}  // namespace
}  // namespace juntora::test
