// Pages handed to a browser, which is a script that tells its arguments here; command lines, and
// settings of the system.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/dialog/dialog.h"
#include "platform/messages.h"
#include "platform/registry/registry.h"
#include "setup/openPage.h"
#include "setup/splitCommand.h"
#include "setup/systemSettings.h"
#include "tests/support/Descriptor.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

constexpr int TEXT_ID = 701;
constexpr std::array TEXTS{StringResource{TEXT_ID, "The page is nowhere."}};

void setRegistry(HKEY root, const char* path, const char* name, const std::string& text) {
    HKEY key{};
    ASSERT_EQ(RegCreateKeyA(root, path, &key), ERROR_SUCCESS);
    const auto size = static_cast<DWORD>(text.size() + 1);
    ASSERT_EQ(RegSetValueExA(key, name, REG_SZ, text.c_str(), size), ERROR_SUCCESS);
    RegCloseKey(key);
}

class PageTest : public TestDesktop {
protected:
    PageTest() {
        std::filesystem::create_directories(m_folder + "/bin");
        std::filesystem::create_directories(m_folder + "/browsers");
        std::filesystem::current_path(m_folder);
        std::ofstream("-my page $(x).html") << "page";
        const std::string pipe = m_folder + "/told";
        mkfifo(pipe.c_str(), 0600);
        m_told = Descriptor(open(pipe.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC));
        setenv("TOLD", pipe.c_str(), 1);
        setenv("PATH", (m_folder + "/bin").c_str(), 1);
    }

    ~PageTest() override {
        std::filesystem::current_path("/");
        std::filesystem::remove_all(m_folder);
    }

    /// Makes a program that tells the name that it was started by and its arguments.
    void makeProgram(const std::string& path) const {
        const std::string file = m_folder + "/" + path;
        std::ofstream(file)
            << "#!/bin/sh\n"
               "{ printf %s \"${0##*/}\"; printf '|%s' \"$@\"; echo; } >\"$TOLD\"\n";
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }

    void setBrowser(const std::string& command) const {
        setRegistry(HKEY_CURRENT_USER, "Software\\Classes\\htmlfile\\shell\\open\\command", nullptr,
                    command);
    }

    /// What the next program tells.
    std::string told() {
        std::string line;
        pollfd watched{m_told, POLLIN, 0};
        while (!line.ends_with('\n') && poll(&watched, 1, 10'000) == 1) {
            char c = 0;
            if (read(m_told, &c, 1) == 1) {
                line += c;
            }
        }
        return line;
    }

    /// What opening the page starts; "nothing" if it says that it failed.
    std::string opened(const std::string& page) {
        const int result = OpenPage(page.c_str());
        EXPECT_TRUE(result == 0 || result == 1);
        return result == 0 ? told() : "nothing";
    }

    std::string m_folder = sandbox().runtimeFolder() + "/pages";
    Descriptor m_told;
};

TEST_F(PageTest, GoesToTheDesktopInOnePiece) {
    makeProgram("bin/xdg-open");
    makeProgram("xdg-open");  // In the current folder, where nobody put it for this.
    for (const char* address : {"https://host/a?b=c&d=$(touch x)#e", "mailto:me@host?subject=a b",
                                "file:///a \"b\" 'c'\\", "x-y+z.1:-v"}) {
        EXPECT_EQ(opened(address), std::string("xdg-open|") + address + "\n");
    }
    // A file goes by its whole path, as the folder spells it.
    const std::string file = m_folder + "/-my page $(x).html";
    for (const std::string& page : {std::string("-my page $(x).html"), file, "C:" + file,
                                    std::string(".\\-MY PAGE $(x).html")}) {
        EXPECT_EQ(opened(page), "xdg-open|" + file + "\n");
    }
    for (const char* none : {"missing.html", "-v", "--help", ""}) {
        EXPECT_EQ(opened(none), "nothing") << none;
    }
    EXPECT_EQ(OpenPage(nullptr), 1);
    EXPECT_EQ(OpenPageOrReport("https://host", "TVCOMMN", 1801), 0);
    EXPECT_EQ(OpenPageOrSay("https://host", TEXT_ID), 0);
    EXPECT_FALSE(std::filesystem::exists("x"));
}

TEST_F(PageTest, GoesToTheRegistrysBrowserWithoutADesktop) {
    EXPECT_EQ(opened("https://host"), "nothing");
    makeProgram("browsers/prog");
    const std::string prog = m_folder + "/browsers/prog";
    const struct {
        std::string command, page, told;
    } cases[] = {
        {prog, "https://host/a", "prog|https://host/a\n"},
        {prog + " -url %1 -new", "https://host/a", "prog|-url|https://host/a\n"},
        // The quote in front of the place stays, and the blank is behind it.
        {prog + " \"%1\"", "https://host/a", "prog| https://host/a\n"},
        {prog + " \"%1\"", "a -b  c", "prog| a -b  c\n"},
        {prog + " \"%1\"", "a\" -b", "nothing"},
        {prog + " -x \\\"%1\\\"", "a --b", "nothing"},
        {prog, "a -b \"c\"\\", "prog|a -b \"c\"\\\n"},
        {prog, "-b", "nothing"},
        {"%1", prog, "nothing"},
        {"\"%1\"", prog, "nothing"},
        {m_folder + "/browsers/none", "/../prog", "nothing"},
        {prog + std::string(1024 - prog.size(), ' '), "a", "nothing"},
    };
    for (const auto& [command, page, told] : cases) {
        setBrowser(command);
        EXPECT_EQ(opened(page), told) << command << "  " << page;
    }
    // 1,040 bytes are the most that a line has.
    setBrowser(prog);
    const std::string longest(1040 - prog.size() - 2, 'p');
    EXPECT_EQ(opened(longest), "prog|" + longest + "\n");
    EXPECT_EQ(opened(longest + "p"), "nothing");
}

TEST_F(PageTest, AFailureIsReported) {
    RegisterResources({}, TEXTS);
    testing::internal::CaptureStderr();
    EXPECT_EQ(OpenPageOrReport("missing.html", "TVCOMMN", 1801), IDOK);
    EXPECT_EQ(OpenPageOrSay("missing.html", TEXT_ID), IDOK);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("TVCOMMN-1801"), std::string::npos) << said;
    EXPECT_NE(said.find("The page is nowhere."), std::string::npos) << said;
    EXPECT_EQ(OpenPageOrReport("missing.html", "TVCOMMN", 9999), -1);
}

TEST_F(PageTest, SystemSettings) {
    constexpr char KEY[] = "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
    EXPECT_EQ(GetRegisteredOwner(), "");
    setRegistry(HKEY_LOCAL_MACHINE, KEY, "RegisteredOrganization", "Voltara");
    EXPECT_EQ(GetRegisteredOrganization(), "Voltara");
    EXPECT_EQ(GetRegisteredOwner(), "");
    setRegistry(HKEY_LOCAL_MACHINE, KEY, "RegisteredOwner", std::string(79, 'o'));
    EXPECT_EQ(GetRegisteredOwner(), std::string(79, 'o'));
    setRegistry(HKEY_LOCAL_MACHINE, KEY, "RegisteredOwner", std::string(80, 'o'));
    EXPECT_EQ(GetRegisteredOwner(), "");

    for (const char* extension : {"opj", ".opj", "", ".a.b"}) {
        EXPECT_TRUE(ExtensionIsShown(extension)) << extension;
    }
    EXPECT_TRUE(ExtensionIsShown(std::string(250, 'x').c_str()));
    for (const std::string& none : {std::string(251, 'x'), std::string("a/b"), std::string("*")}) {
        EXPECT_FALSE(ExtensionIsShown(none.c_str())) << none;
    }
}

TEST(SplitCommandTest, TakesTheProgramAndTheRest) {
    const struct {
        const char *line, *program, *arguments;
    } cases[] = {
        {"\"/my tools/prog\" -a -b", "\"/my tools/prog\"", " -a -b"},
        {" prog\t\n \"a b\"  c ", "\"prog\"", " \"a b\"  c "},
        {"prog\ta", "\"prog\"", "\ta"},
        {"pr\"o g\" a", "\"pro g\"", " a"},
        {"\"pr og a", "\"pr og a\"", ""},
        {"\"\" a", "", " a"},
        {"prog", "\"prog\"", ""},
        {"prog ", "\"prog\"", ""},
        {" \t", "", ""},
        {"", "", ""},
        {nullptr, "", ""},
    };
    for (const auto& [line, program, arguments] : cases) {
        CString first("left");
        CString rest("over");
        SplitCommand(line, first, rest);
        EXPECT_STREQ(first, program);
        EXPECT_STREQ(rest, arguments);
    }
    CString both("prog a b");
    CString rest;
    SplitCommand(both, both, rest);
    EXPECT_STREQ(both, "\"prog\"");
    EXPECT_STREQ(rest, " a b");
}

}  // namespace
}  // namespace juntora::test
