// juntoractl's commands for names, switches and pages, which need no hub.
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

class NameCommandTest : public ToolsTest {
protected:
    ~NameCommandTest() override { EXPECT_FALSE(hubRuns()); }
};

TEST_F(NameCommandTest, PrintsAnAnswerOrAReason) {
    setenv("SWITCH_TEST", "1x", 1);
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string output;
    } cases[] = {
        {{"name", "next", "x[9]"}, 0, "x[10]\n"},
        {{"name", "next", "az"}, 0, "aaa\n"},
        {{"name", "next", "99999999999999999999"}, 0, "100000000000000000000\n"},
        {{"name", "next", "x[y]"}, 1, ""},
        {{"name", "next", ""}, 1, ""},
        {{"name", "previous", "xaa"}, 0, "xz\n"},
        {{"name", "previous", "a"}, 1, ""},
        {{"name", "previous", "1"}, 1, ""},
        {{"name", "compare", "a9", "a10"}, 0, "-1\n"},
        {{"name", "match", "*.OPJ", "board.opj"}, 0, "match\n"},
        {{"name", "match", "a\\*", "ab"}, 1, "no match\n"},
        {{"name", "match", "a"}, 2, ""},
        {{"name"}, 2, ""},
        {{"switch", "SWITCH_TEST"}, 0, "on\n"},
        {{"switch", "ENABLE_EXPRESS_CONNECT"}, 0, "on\n"},
        {{"switch", "SWITCH_TEST_UNSET"}, 1, "off\n"},
        {{"open", "missing.html"}, 1, ""},
        {{"open"}, 2, ""},
    };
    const std::string folder = sandbox().runtimeFolder() + "/viewer";
    std::filesystem::create_directory(folder);
    std::ofstream(folder + "/xdg-open") << "#!/bin/sh\nprintf %s \"$1\" >'" << folder << "/told'\n";
    std::filesystem::permissions(folder + "/xdg-open", std::filesystem::perms::owner_all);
    ASSERT_EQ(mkfifo((folder + "/told").c_str(), 0600), 0);
    const std::string before = getenv("PATH");
    setenv("PATH", folder.c_str(), 1);
    EXPECT_EQ(control({"open", "https://host/a b"}).code, 0);
    std::ifstream told(folder + "/told");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(told), {}), "https://host/a b");
    setenv("PATH", before.c_str(), 1);
    for (const auto& each : cases) {
        const Outcome outcome = control(each.arguments);
        EXPECT_EQ(outcome.code, each.code) << testing::PrintToString(each.arguments);
        EXPECT_EQ(outcome.output, each.output) << testing::PrintToString(each.arguments);
        EXPECT_EQ(outcome.errors.empty(), !outcome.output.empty());
    }
}

}  // namespace
}  // namespace juntora::test
