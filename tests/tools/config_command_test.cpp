// juntoractl's commands for the installation and its settings, which need no hub.
#include <filesystem>
#include <fstream>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;
namespace fs = std::filesystem;

class ConfigCommandTest : public ToolsTest {
protected:
    ConfigCommandTest()
        : m_folder(sandbox().runtimeFolder() + "/config"),
          m_own(m_folder + "/home/mrdsetup/Tarvex_Voltara/16.6.0/Voltara.ini") {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder + "/home");
        setenv("HOME", (m_folder + "/home").c_str(), 1);
        setenv("JUNTORA_SITE", (m_folder + "/site").c_str(), 1);
    }
    ~ConfigCommandTest() override { EXPECT_FALSE(hubRuns()); }

    std::string write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder + "/" + name, std::ios::binary) << text;
        return m_folder + "/" + name;
    }

    std::string m_folder;
    std::string m_own;
};

TEST_F(ConfigCommandTest, TheShippedSettingsAreAUsersStart) {
    const std::string root = fs::canonical(ProgramFolder() + "/..");
    EXPECT_EQ(control({"root"}).output, root + "\n");
    EXPECT_EQ(json::parse(control({"root", "--json"}).output)["root"], root);
    EXPECT_EQ(control({"search", "Tarvex_Voltara/16.6.0/Voltara.ini"}).code, 1);
    EXPECT_EQ(control({"config", "path"}).output, m_own + "\n");
    EXPECT_EQ(json::parse(control({"config", "path", "--json"}).output)["path"], m_own);
    EXPECT_EQ(control({"search", "Tarvex_Voltara/16.6.0/Voltara.ini"}).output, m_own + "\n");
    // Every key that is shipped has a section, a name and a value that reads.
    const json sections = json::parse(control({"config", "sections", "--json"}).output);
    ASSERT_FALSE(sections.empty());
    for (const std::string section : sections) {
        const json keys = json::parse(control({"config", "keys", section, "--json"}).output);
        ASSERT_FALSE(keys.empty());
        for (const std::string key : keys) {
            const Outcome value = control({"config", "get", section, key});
            EXPECT_EQ(value.code, 0) << section << key;
            EXPECT_NE(value.output, "\n") << section << key;
        }
    }
}

TEST_F(ConfigCommandTest, ReadsAndWrites) {
    const std::string file = write("a.ini", "[Paths]\nlist=$DIRS\\x;\"/b\"\nempty=\n[None]\n");
    setenv("DIRS", "/d;/e", 1);
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string output;
    } cases[] = {
        {{"sections"}, 0, "Paths\nNone\n"},
        {{"keys", "paths"}, 0, "list\nempty\n"},
        {{"keys", "None"}, 1, ""},
        {{"keys"}, 2, ""},
        {{"get", "Paths", "LIST"}, 0, "/d\\x;/e\\x;/b\n"},
        {{"get", "Paths", "list", "--quote"}, 0, "\"/d\\x\";\"/e\\x\";\"/b\"\n"},
        {{"get", "Paths", "empty"}, 0, "\n"},
        {{"get", "Paths", "none"}, 1, ""},
        {{"get", "Paths"}, 2, ""},
        {{"set", "Paths", "list", "/e\\x;/d\\x;/new", "--quote"}, 0, ""},
        {{"get", "Paths", "list"}, 0, "/d\\x;/e\\x;/new\n"},
        {{"set", "New", "key", std::string(70'000, 'v')}, 0, ""},
        {{"get", "New", "key"}, 0, std::string(70'000, 'v') + "\n"},
        {{"set", "a]b", "key", "v"}, 1, ""},
        {{"set", "a", "key", "v\nw=1"}, 1, ""},
        {{"set", "a", "key"}, 2, ""},
        {{"set", "Paths", "list", "/x;$DIRS/x"}, 1, ""},
        {{"get", "", "list"}, 2, ""},
        {{"get", "Paths", ""}, 2, ""},
        {{"keys", ""}, 2, ""},
    };
    for (const auto& each : cases) {
        std::vector<std::string> arguments = {"config"};
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        arguments.insert(arguments.end(), {"--file", file});
        const Outcome outcome = control(arguments);
        EXPECT_EQ(outcome.code, each.code) << testing::PrintToString(each.arguments);
        EXPECT_EQ(outcome.output, each.output) << testing::PrintToString(each.arguments);
        EXPECT_EQ(outcome.errors.empty(), each.code == 0) << outcome.errors;
    }
    std::ifstream stream(file);
    std::string line;
    std::getline(std::getline(stream, line), line);
    EXPECT_EQ(line, "list=$DIRS\\x;\"/new\"");
    EXPECT_FALSE(fs::exists(m_own)) << "another file needs none of the suite's";
    write("a.ini", "[Paths]\nlist=/a;$NOWHERE\\x\n");
    const Outcome lost = control({"config", "set", "Paths", "list", "/b", "--file", file});
    EXPECT_EQ(lost.code, 0);
    EXPECT_NE(lost.errors.find("$NOWHERE of the value that was there is not set"),
              std::string::npos);
    EXPECT_EQ(control({"config", "sections", "--file", ""}).code, 2);
    const json got =
        json::parse(control({"config", "set", "s", "k", "v", "--json", "--file", file}).output);
    EXPECT_EQ(got, (json{{"file", file}, {"section", "s"}, {"key", "k"}, {"value", "v"}}));
}

TEST_F(ConfigCommandTest, SaysWhatIsInTheWay) {
    const struct {
        std::string file;
        std::string part;
    } cases[] = {
        {m_folder + "/none.ini", "The file was not found"},
        {m_folder, "Access was denied"},
        {write("wide.ini", "\xFF\xFE["), "not understood"},
    };
    for (const auto& each : cases) {
        for (const std::vector<std::string>& arguments :
             {std::vector<std::string>{"get", "s", "k"}, {"sections"}, {"keys", "s"}}) {
            std::vector<std::string> all = {"config"};
            all.insert(all.end(), arguments.begin(), arguments.end());
            all.insert(all.end(), {"--file", each.file});
            const Outcome outcome = control(all);
            EXPECT_EQ(outcome.code, 1);
            EXPECT_EQ(outcome.output, "");
            EXPECT_NE(outcome.errors.find(each.file + ": "), std::string::npos) << outcome.errors;
            EXPECT_NE(outcome.errors.find(each.part), std::string::npos) << outcome.errors;
        }
    }
    setenv("VOLTARAINIPATH", (m_folder + "/none.ini").c_str(), 1);
    const Outcome outcome = control({"config", "get", "s", "k"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_NE(outcome.errors.find("VOLTARAINIPATH"), std::string::npos);
    unsetenv("VOLTARAINIPATH");
    EXPECT_EQ(control({"search", "none"}).code, 1);
    EXPECT_EQ(control({"config"}).code, 2);
}

}  // namespace
}  // namespace juntora::test
