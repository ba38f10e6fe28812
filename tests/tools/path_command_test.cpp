// juntoractl's commands for paths, which need no hub.
#include <filesystem>
#include <fstream>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;

class PathCommandTest : public ToolsTest {
protected:
    PathCommandTest() : m_folder(sandbox().runtimeFolder() + "/files") {
        std::filesystem::create_directories(m_folder + "/designs");
        std::ofstream(m_folder + "/board.opj") << "12345";
        std::ofstream(m_folder + "/.hidden");
    }
    ~PathCommandTest() override { EXPECT_FALSE(hubRuns()); }

    std::string m_folder;
};

TEST_F(PathCommandTest, TellsAPathsParts) {
    const json expected = {{"path", "C:\\desk\\board.v2.opj"},
                           {"entered", "/desk/./board.v2.opj"},
                           {"drive", "C:"},
                           {"directory", "C:\\desk\\"},
                           {"base name", "board.v2"},
                           {"extension", "opj"},
                           {"stem", "C:\\desk\\board.v2"},
                           {"parent", "C:\\desk"},
                           {"components", {"C:", "desk", "board.v2.opj"}},
                           {"UNC root", ""},
                           {"display name", "board.v2.opj"}};
    EXPECT_EQ(json::parse(control({"path", "/desk/./board.v2.opj", "--json"}).output), expected);
    const std::string plain = control({"path", "//s/share/x"}).output;
    EXPECT_NE(plain.find("\nUNC root      \\\\s\\share\n"), std::string::npos) << plain;
    EXPECT_NE(plain.find("\ncomponents    s | share | x\n"), std::string::npos) << plain;
    EXPECT_NE(plain.find("\ndrive\n"), std::string::npos) << plain;
}

TEST_F(PathCommandTest, PrintsForms) {
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string output;
    } cases[] = {
        {{"/desk/a/b", "--relative", "/desk/c"}, 0, "..\\a\\b\n"},
        {{"..\\x", "--base", "D:\\a", "--relative", "D:\\a", "--json"},
         0,
         "{\"relative\":\"..\\\\x\"}\n"},
        {{"/desk/designs/board.opj", "--abbreviate", "16"}, 0, "C:\\...\\board.opj\n"},
        {{"/desk/designs/board.opj", "--abbreviate", "5"}, 1, ""},
        {{"/desk/designs/board.opj", "--abbreviate", "5", "--json"},
         1,
         "{\"abbreviated\":null,\"needed\":16}\n"},
        {{""}, 1, ""},
        {{"/a", "--abbreviate", "0"}, 2, ""},
        {{"/a", "--abbreviate", "9", "--relative", "/"}, 2, ""},
        {{}, 2, ""},
    };
    for (const auto& each : cases) {
        std::vector<std::string> arguments = {"path"};
        arguments.insert(arguments.end(), each.arguments.begin(), each.arguments.end());
        const Outcome outcome = control(arguments);
        EXPECT_EQ(outcome.code, each.code) << testing::PrintToString(arguments);
        EXPECT_EQ(outcome.output, each.output) << testing::PrintToString(arguments);
        EXPECT_EQ(outcome.errors.empty(), !outcome.output.empty());
    }
}

TEST_F(PathCommandTest, ListsADirectory) {
    EXPECT_EQ(control({"ls", m_folder}).output,
              "-h--a-             0  .hidden\n"
              "----a-             5  board.opj\n"
              "---d--                designs\n");
    const json listing = json::parse(control({"ls", m_folder, "b*", "--json"}).output);
    ASSERT_EQ(listing.size(), 1U);
    EXPECT_EQ(listing[0]["name"], "board.opj");
    EXPECT_EQ(listing[0]["attributes"], json::array({"archive"}));
    EXPECT_EQ(listing[0]["size"], 5);
    EXPECT_GT(listing[0]["modified"], 1'000'000'000);

    EXPECT_EQ(control({"ls", m_folder, "--must", "directory"}).output,
              "---d--                designs\n");
    EXPECT_EQ(control({"ls", m_folder, "--must", "a", "--must-not", "hidden,read-only"}).output,
              "----a-             5  board.opj\n");
    const Outcome none = control({"ls", m_folder, "--must", "sd", "--json"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.output, "[]\n");
    EXPECT_EQ(control({"ls", m_folder + "/none"}).code, 1);
    EXPECT_EQ(control({"ls", m_folder, "--must", "x"}).code, 2);
}

TEST_F(PathCommandTest, ChecksAPath) {
    EXPECT_EQ(control({"check", "/a/b c.d.e"}).output, "legal\n");
    Outcome outcome = control({"check", "/a/b c.d.e", "--kind", "0", "--json"});
    EXPECT_EQ(outcome.code, 1);
    const json refusal = json::parse(outcome.output);
    EXPECT_EQ(refusal["legal"], false);
    EXPECT_EQ(refusal["error"], 817);
    EXPECT_EQ(control({"check", "/EIGHTCHR.TXT", "--kind", "0"}).code, 0);
    EXPECT_EQ(json::parse(control({"check", "/.A", "--kind", "0", "--json"}).output)["error"],
              nullptr);
    outcome = control({"check", "/" + std::string(258, 'a') + "/b"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output.substr(0, 5), "825  ");
    outcome = control({"check", "\\\\nobody\\nothing\\x"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors, "");
    EXPECT_EQ(control({"check", "/a", "--kind", "7"}).code, 2);
}

}  // namespace
}  // namespace juntora::test
