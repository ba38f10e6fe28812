// The registry: keys, values, the two hives and their merged view, and the override.
#include <algorithm>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/kernel/rights.h"
#include "tests/platform/RegistryFolder.h"

namespace juntora::test {
namespace {

constexpr char CLASSES[] = "Software\\Classes\\";

class RegistryTest : public RegistryFolder {};

TEST_F(RegistryTest, MakesKeysWithThoseAboveThem) {
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, tryOpen(HKEY_CURRENT_USER, "Software\\Tarvex\\Hub"));
    HKEY key = nullptr;
    DWORD disposition = 0;
    EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExA(HKEY_CURRENT_USER, "software\\Tarvex\\Hub",
                                             KEY_READ | KEY_WRITE, &key, &disposition));
    EXPECT_EQ(REG_CREATED_NEW_KEY, disposition);
    EXPECT_EQ((Names{"Classes", "Tarvex"}), subkeys(open(HKEY_CURRENT_USER, "SOFTWARE")))
        << "a key that was there keeps its spelling and its subkeys";
    HKEY again = nullptr;
    EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExA(open(HKEY_CURRENT_USER, "Software"), "TARVEX\\hub",
                                             KEY_READ, &again, &disposition));
    EXPECT_EQ(REG_OPENED_EXISTING_KEY, disposition);
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(key, "x", REG_SZ, "1", 2));
    EXPECT_EQ((Names{"x"}), values(again));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, tryOpen(HKEY_LOCAL_MACHINE, "Software\\Tarvex"));
    EXPECT_EQ(ERROR_SUCCESS, RegCloseKey(key));
    EXPECT_EQ(ERROR_INVALID_HANDLE, RegCloseKey(key));
    EXPECT_EQ(ERROR_INVALID_HANDLE, RegQueryValueExA(key, "x", nullptr, nullptr, nullptr));
    EXPECT_EQ(ERROR_INVALID_HANDLE, make(nullptr, "x"));
    EXPECT_EQ((Names{"x"}), values(again)) << "each handle is closed for itself";
    EXPECT_EQ(ERROR_SUCCESS, RegCloseKey(HKEY_CURRENT_USER));
    EXPECT_EQ((Names{"x"}), values(open(HKEY_CURRENT_USER, "Software\\Tarvex\\Hub")));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, RegOpenKeyExA(HKEY_CURRENT_USER, "", KEY_READ, nullptr));
}

TEST_F(RegistryTest, ListsNamesInTheirOrder) {
    for (const char* name : {"b", "C", "a", "d"}) {
        make(HKEY_CURRENT_USER, std::string("List\\") + name);
        write(HKEY_CURRENT_USER, "List", name, name);
    }
    write(HKEY_CURRENT_USER, "List", "", "default");
    const HKEY key = open(HKEY_CURRENT_USER, "list");
    EXPECT_EQ((Names{"a", "b", "C", "d"}), subkeys(key));
    EXPECT_EQ((Names{"", "a", "b", "C", "d"}), values(key));
    char name[8];
    const auto at = [&](DWORD index) -> std::string {
        DWORD length = sizeof name;
        const DWORD error = RegEnumKeyExA(key, index, name, &length);
        return error == ERROR_SUCCESS ? name : "error " + std::to_string(error);
    };
    for (const DWORD index : {2U, 2U, 1U, 3U, 0U, 3U}) {
        EXPECT_EQ((Names{"a", "b", "C", "d"})[index], at(index));
    }
    EXPECT_EQ("error 259", at(4));
    EXPECT_EQ("a", at(0));
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyA(key, "A"));
    EXPECT_EQ("C", at(1)) << "numbers are those of now";
    DWORD length = 1;
    EXPECT_EQ(ERROR_MORE_DATA, RegEnumKeyExA(key, 1, name, &length));
    EXPECT_EQ(1U, length);
    length = 2;
    EXPECT_EQ(ERROR_SUCCESS, RegEnumKeyExA(key, 1, name, &length));
    EXPECT_EQ(1U, length);
}

TEST_F(RegistryTest, ReadsValuesBySizesAndTypes) {
    const HKEY key = open(HKEY_CURRENT_USER, "Software");
    const DWORD number = 0x01020304;
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(key, "Number", REG_DWORD, &number, 4));
    char data[8] = "unread";
    DWORD size = 3;
    DWORD type = 0;
    EXPECT_EQ(ERROR_MORE_DATA, RegQueryValueExA(key, "NUMBER", &type, data, &size));
    EXPECT_EQ(4U, size);
    EXPECT_EQ(REG_DWORD, type);
    EXPECT_STREQ("unread", data);
    EXPECT_EQ(ERROR_SUCCESS, RegQueryValueExA(key, "Number", nullptr, data, &size));
    EXPECT_EQ(std::string("\4\3\2\1ad", 6), std::string(data, 6));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, RegQueryValueExA(key, "Number", &type, data, nullptr));
    EXPECT_EQ(ERROR_SUCCESS, RegQueryValueExA(key, "Number", nullptr, nullptr, nullptr));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegQueryValueExA(key, nullptr, nullptr, nullptr, nullptr));

    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(key, "number", 77, nullptr, 0)) << "any type goes";
    EXPECT_EQ(ERROR_SUCCESS, RegQueryValueExA(key, "Number", &type, data, &size));
    EXPECT_EQ(77U, type);
    EXPECT_EQ(0U, size);
    EXPECT_EQ((Names{"Number"}), values(key)) << "the first spelling stays";

    std::string large(1 << 20, 'x');
    large[large.size() / 2] = '\0';
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(key, nullptr, REG_BINARY, large.data(), 1 << 20));
    std::string read(1 << 20, ' ');
    size = 1 << 20;
    EXPECT_EQ(ERROR_SUCCESS, RegQueryValueExA(key, "", &type, read.data(), &size));
    EXPECT_EQ(large, read);
    EXPECT_EQ(ERROR_INVALID_PARAMETER,
              RegSetValueExA(key, "", REG_BINARY, large.data(), (1 << 20) + 1));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, RegSetValueExA(key, "", REG_BINARY, nullptr, 1));

    char name[8];
    DWORD length = sizeof name;
    size = 0;
    EXPECT_EQ(ERROR_MORE_DATA, RegEnumValueA(key, 0, name, &length, &type, data, &size));
    EXPECT_EQ(1U << 20, size);
    length = 6;
    EXPECT_EQ(ERROR_MORE_DATA, RegEnumValueA(key, 1, name, &length, &type, data, &size));
    length = 7;
    EXPECT_EQ(ERROR_SUCCESS, RegEnumValueA(key, 1, name, &length, &type, data, &size));
    EXPECT_STREQ("Number", name);
    EXPECT_EQ(77U, type);
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteValueA(key, "NUMBER"));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteValueA(key, "number"));
    EXPECT_EQ((Names{""}), values(key));
}

TEST_F(RegistryTest, TakesOddNamesAsTheyAre) {
    const std::string longest(255, 'n');
    for (const std::string& name :
         {std::string("it's \"quoted\"; DROP TABLE key --"), std::string("a/b %s ?1 :x"),
          std::string("\xc4\xff\x01 \n"), longest, std::string(" ."), std::string("*")}) {
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, "Odd\\" + name, name, name));
        EXPECT_EQ(name, read(HKEY_CURRENT_USER, "Odd\\" + name, name));
        const HKEY odd = open(HKEY_CURRENT_USER, "Odd");
        EXPECT_EQ((Names{name}), subkeys(odd));
        EXPECT_EQ((Names{name}), values(open(odd, name)));
        EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyA(odd, name.c_str()));
    }
    write(HKEY_CURRENT_USER, "Odd\\\xc4", "\xc4", "capital");
    EXPECT_EQ("error 2", read(HKEY_CURRENT_USER, "Odd\\\xe4", "")) << "case is a matter of A to Z";
    EXPECT_EQ("error 2", read(HKEY_CURRENT_USER, "Odd\\\xc4", "\xe4"));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, make(HKEY_CURRENT_USER, "Odd\\" + longest + "n"));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, tryOpen(HKEY_CURRENT_USER, longest + "n\\x"));
    EXPECT_EQ(ERROR_SUCCESS, make(HKEY_CURRENT_USER, "\\\\Odd\\\\deep\\\\"));
    EXPECT_EQ(ERROR_SUCCESS, tryOpen(HKEY_CURRENT_USER, "Odd\\deep"));
    const std::string name(16'383, 'v');
    const HKEY odd = open(HKEY_CURRENT_USER, "odd");
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(odd, name.c_str(), REG_SZ, "", 1));
    EXPECT_EQ(ERROR_INVALID_PARAMETER, RegSetValueExA(odd, (name + "v").c_str(), REG_SZ, "", 1));

    std::string path;
    while (path.size() < 10'000) {
        path += "Odd element " + std::to_string(path.size()) + "\\";
    }
    EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, path, "deep", "down"));
    EXPECT_EQ("down", read(HKEY_CURRENT_USER, path, "DEEP"));
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeA(HKEY_CURRENT_USER, "odd ELEMENT 0"));
    EXPECT_EQ("error 2", read(HKEY_CURRENT_USER, path, "deep"));
}

TEST_F(RegistryTest, OpensByWideTexts) {
    make(HKEY_CURRENT_USER, "Software\\\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80");
    HKEY key = nullptr;
    EXPECT_EQ(ERROR_SUCCESS,
              RegOpenKeyW(HKEY_CURRENT_USER, u"SOFTWARE\\\u00e4\u20ac\U0001f600", &key));
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(key, "x", REG_SZ, "", 1)) << "all access";
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegOpenKeyW(HKEY_CURRENT_USER, u"\u20ac", &key));
    for (const char16_t half : {u'\xd83d', u'\xde00'}) {
        const char16_t text[] = {u'x', half, u'y', 0};
        EXPECT_EQ(ERROR_INVALID_PARAMETER, RegOpenKeyW(HKEY_CURRENT_USER, text, &key));
    }
    EXPECT_EQ(ERROR_SUCCESS, RegOpenKeyW(HKEY_CURRENT_USER, nullptr, &key));
    EXPECT_EQ((Names{"Software"}), subkeys(key));
}

TEST_F(RegistryTest, DeletesKeysAndTellsTheirHandles) {
    write(HKEY_CURRENT_USER, "Top\\Mid\\Low", "x", "1");
    const HKEY mid = open(HKEY_CURRENT_USER, "Top\\Mid");
    const HKEY low = open(HKEY_CURRENT_USER, "Top\\Mid\\Low");
    EXPECT_EQ(ERROR_ACCESS_DENIED, RegDeleteKeyA(HKEY_CURRENT_USER, "Top\\Mid"));
    EXPECT_EQ("1", read(HKEY_CURRENT_USER, "Top\\Mid\\Low", "x"));
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyA(mid, "low"));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteKeyA(mid, "low"));
    write(HKEY_CURRENT_USER, "Top\\Mid\\Low", "y", "2");
    EXPECT_EQ(ERROR_KEY_DELETED, RegQueryValueExA(low, "y", nullptr, nullptr, nullptr));
    EXPECT_EQ(ERROR_KEY_DELETED, RegSetValueExA(low, "y", REG_SZ, "", 1));
    EXPECT_EQ(ERROR_KEY_DELETED, RegDeleteValueA(low, "y"));
    EXPECT_EQ(ERROR_KEY_DELETED, make(low, "z"));
    EXPECT_EQ(ERROR_KEY_DELETED, tryOpen(low, ""));
    EXPECT_EQ(ERROR_KEY_DELETED, tryOpen(low, "z"));
    EXPECT_EQ(ERROR_KEY_DELETED, RegDeleteKeyA(low, "z"));
    EXPECT_EQ((Names{"error 1018"}), subkeys(low));
    EXPECT_EQ((Names{"error 1018"}), values(low));
    EXPECT_EQ((Names{"y"}), values(open(mid, "Low"))) << "not the values of the one before";
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeA(HKEY_CURRENT_USER, "top"));
    EXPECT_EQ((Names{"Software"}), subkeys(HKEY_CURRENT_USER));
    EXPECT_EQ((Names{"error 1018"}), subkeys(mid));
    for (const char* path : {static_cast<const char*>(nullptr), "", "\\"}) {
        EXPECT_EQ(ERROR_INVALID_PARAMETER, RegDeleteKeyA(HKEY_CURRENT_USER, path));
        EXPECT_EQ(ERROR_INVALID_PARAMETER, RegDeleteTreeA(HKEY_CURRENT_USER, path));
    }
}

TEST_F(RegistryTest, HoldsHandlesToTheirAccess) {
    write(HKEY_CURRENT_USER, "Key\\Sub", "x", "1");
    const HKEY reader = open(HKEY_CURRENT_USER, "Key\\Sub", KEY_QUERY_VALUE);
    EXPECT_EQ(ERROR_SUCCESS, RegQueryValueExA(reader, "x", nullptr, nullptr, nullptr));
    EXPECT_EQ(ERROR_ACCESS_DENIED, RegSetValueExA(reader, "x", REG_SZ, "2", 2));
    EXPECT_EQ(ERROR_ACCESS_DENIED, RegDeleteValueA(reader, "x"));
    EXPECT_EQ((Names{"error 5"}), subkeys(reader));
    const HKEY writer = open(HKEY_CURRENT_USER, "Key\\Sub", KEY_SET_VALUE);
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(writer, "x", REG_SZ, "2", 2));
    EXPECT_EQ(ERROR_ACCESS_DENIED, RegQueryValueExA(writer, "x", nullptr, nullptr, nullptr));
    EXPECT_EQ((Names{"error 5"}), values(writer));
    EXPECT_EQ("2", read(HKEY_CURRENT_USER, "Key\\Sub", "x"));
    EXPECT_EQ(ERROR_SUCCESS, make(writer, "below")) << "keys below are reached by any handle";
}

TEST_F(RegistryTest, LaysTheUsersClassesOverTheMachines) {
    const auto user = [](const std::string& path, const char* name, const char* text) {
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CURRENT_USER, CLASSES + path, name, text));
    };
    const auto machine = [](const std::string& path, const char* name, const char* text) {
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_LOCAL_MACHINE, CLASSES + path, name, text));
    };
    EXPECT_EQ((Names{}), subkeys(HKEY_CLASSES_ROOT));
    user("Both", "x", "user's");
    user("Users", "", "u");
    machine("both", "X", "machine's");
    machine("both", "y", "machine's");
    machine("both\\sub", "", "s");
    machine("Machines", "", "m");
    EXPECT_EQ((Names{"Both", "Machines", "Users"}), subkeys(HKEY_CLASSES_ROOT));
    const HKEY both = open(HKEY_CLASSES_ROOT, "BOTH");
    EXPECT_EQ((Names{"x", "y"}), values(both));
    EXPECT_EQ((Names{"sub"}), subkeys(both));
    EXPECT_EQ("user's", read(both, "", "x"));
    EXPECT_EQ("machine's", read(both, "", "y"));
    EXPECT_EQ("s", read(both, "sub", ""));
    EXPECT_EQ("error 2", read(HKEY_CLASSES_ROOT, "none", ""));

    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(both, "y", REG_SZ, "new", 4));
    EXPECT_EQ("new", read(HKEY_CURRENT_USER, CLASSES + std::string("Both"), "y"));
    EXPECT_EQ("machine's", read(HKEY_LOCAL_MACHINE, CLASSES + std::string("Both"), "y"));
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteValueA(both, "y"));
    EXPECT_EQ("machine's", read(both, "", "y"));

    EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CLASSES_ROOT, "machines", "", "changed"));
    EXPECT_EQ("changed", read(HKEY_LOCAL_MACHINE, CLASSES + std::string("Machines"), ""));
    EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CLASSES_ROOT, "New\\Sub", "", "n"));
    EXPECT_EQ("n", read(HKEY_LOCAL_MACHINE, CLASSES + std::string("New\\Sub"), ""));
    EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CLASSES_ROOT, "Users\\Sub", "", "n"));
    EXPECT_EQ("n", read(HKEY_CURRENT_USER, CLASSES + std::string("Users\\Sub"), ""));
    EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CLASSES_ROOT, "Both\\sub\\low", "", "n"));
    EXPECT_EQ("n", read(HKEY_LOCAL_MACHINE, CLASSES + std::string("Both\\sub\\low"), ""));
}

TEST_F(RegistryTest, KeepsMergedHandlesToWhatIsThere) {
    const HKEY classes = open(HKEY_CLASSES_ROOT, "");
    write(HKEY_LOCAL_MACHINE, CLASSES + std::string("Late"), "x", "machine's");
    const HKEY late = open(classes, "Late");
    write(HKEY_CURRENT_USER, CLASSES + std::string("LATE"), "x", "user's");
    EXPECT_EQ("user's", read(late, "", "x"));
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyA(HKEY_CLASSES_ROOT, "Late"));
    EXPECT_EQ("machine's", read(late, "", "x")) << "what a read found first has gone";
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeA(classes, "late"));
    EXPECT_EQ(ERROR_KEY_DELETED, RegQueryValueExA(late, "x", nullptr, nullptr, nullptr));
    EXPECT_EQ((Names{"error 1018"}), values(late));
    EXPECT_EQ(ERROR_FILE_NOT_FOUND, RegDeleteKeyA(classes, "Late"));

    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
        EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeA(root, "Software"));
    }
    EXPECT_EQ((Names{}), subkeys(classes)) << "the root is there in any case";
    EXPECT_EQ("error 2", read(classes, "", ""));
    EXPECT_EQ(ERROR_SUCCESS, RegSetValueExA(HKEY_CLASSES_ROOT, "", REG_SZ, "x", 2));
    EXPECT_EQ("x", read(HKEY_LOCAL_MACHINE, CLASSES, ""));
}

TEST_F(RegistryTest, OverridesAPredefinedKeyForTheProcess) {
    write(HKEY_LOCAL_MACHINE, CLASSES + std::string("Machines"), "", "m");
    const HKEY before = open(HKEY_CLASSES_ROOT, "Machines");
    const HKEY users = open(HKEY_CURRENT_USER, "Software\\Classes");
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CLASSES_ROOT, users));
    EXPECT_EQ(ERROR_SUCCESS, RegCloseKey(users));
    std::thread([] {
        EXPECT_EQ("error 2", read(HKEY_CLASSES_ROOT, "Machines", ""));
        EXPECT_EQ(ERROR_SUCCESS, write(HKEY_CLASSES_ROOT, "CLSID\\{1}", "", "hub"));
    }).join();
    EXPECT_EQ("hub", read(HKEY_CURRENT_USER, CLASSES + std::string("CLSID\\{1}"), ""));
    EXPECT_EQ("m", read(before, "", "")) << "what was open stays what it was";
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr));
    EXPECT_EQ("m", read(HKEY_CLASSES_ROOT, "Machines", ""));
    EXPECT_EQ("hub", read(HKEY_CLASSES_ROOT, "CLSID\\{1}", ""));

    EXPECT_EQ(ERROR_INVALID_HANDLE, RegOverridePredefKey(before, HKEY_CURRENT_USER));
    EXPECT_EQ(ERROR_INVALID_HANDLE, RegOverridePredefKey(HKEY_CLASSES_ROOT, users));
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, HKEY_CURRENT_USER));
    EXPECT_EQ("hub", read(HKEY_LOCAL_MACHINE, CLASSES + std::string("CLSID\\{1}"), ""));
    EXPECT_EQ("m", read(HKEY_CLASSES_ROOT, "Machines", "")) << "the merged view is made of hives";
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr));
}

TEST_F(RegistryTest, ServesThreadsWithOneHandle) {
    const HKEY key = open(HKEY_CURRENT_USER, "Software");
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            for (int i = 0; i < 25; ++i) {
                const std::string name = std::to_string(thread * 25 + i);
                good += write(key, "Thread" + std::to_string(thread), name, name) == 0 &&
                        read(key, "Thread" + std::to_string(thread), name) == name;
                good += !subkeys(key).empty();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(200, good);
    EXPECT_EQ(25U, values(open(key, "Thread3")).size());
}

TEST_F(RegistryTest, TellsTheAdministratorByTheUser) {
    PSID administrators = nullptr;
    PSID others = nullptr;
    ASSERT_TRUE(AllocateAndInitializeSid(&SECURITY_NT_AUTHORITY, 2, 32, 544, &administrators));
    ASSERT_TRUE(AllocateAndInitializeSid(&SECURITY_NT_AUTHORITY, 2, 32, 545, &others));
    BOOL isMember = 0;
    EXPECT_TRUE(CheckTokenMembership(nullptr, administrators, &isMember));
    EXPECT_EQ(geteuid() == 0, isMember != 0);
    EXPECT_TRUE(CheckTokenMembership(nullptr, others, &isMember));
    EXPECT_FALSE(isMember);
    EXPECT_TRUE(apart([&] {
        becomeNobody();
        EXPECT_TRUE(CheckTokenMembership(nullptr, administrators, &isMember));
        EXPECT_FALSE(isMember);
    }));
    EXPECT_FALSE(CheckTokenMembership(nullptr, nullptr, &isMember));
    EXPECT_FALSE(AllocateAndInitializeSid(&SECURITY_NT_AUTHORITY, 3, 32, 544, &others));
    FreeSid(administrators);
    FreeSid(others);
}

}  // namespace
}  // namespace juntora::test
