// juntoractl's locks on files, without a hub.
#include <csignal>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;

class LockCommandTest : public ToolsTest {
protected:
    static std::string status(const std::string& file) {
        const Outcome outcome = control({"lock", "status", file});
        EXPECT_EQ(outcome.code, 0) << outcome.errors;
        return outcome.output;
    }
};

TEST_F(LockCommandTest, TellsWhatOthersHoldUntilTheyAreDone) {
    EXPECT_EQ(status("/a.opj"), "0\n");
    ChildProcess writer("juntoractl", {"lock", "hold", "/a.opj", "write"});
    EXPECT_EQ(writer.readLine(), "0: success");
    ChildProcess watcher("juntoractl", {"lock", "hold", "/A.OPJ", "monitor", "--json"});
    const json held = {
        {"file", "C:\\A.OPJ"}, {"kind", "monitor"}, {"result", 0}, {"meaning", "success"}};
    EXPECT_EQ(json::parse(watcher.readLine().value_or("{}")), held);
    EXPECT_EQ(status("/a.opj"),
              "40\n8: somebody has the write lock\n32: somebody watches the file\n");

    const Outcome refused = control({"lock", "hold", "/a.opj", "read", "--timeout", "20"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_EQ(refused.output, "3: not to be had within the time given\n");
    const Outcome tooLong = control({"lock", "hold", "/" + std::string(600, 'a'), "read"});
    EXPECT_EQ(tooLong.code, 1);
    EXPECT_EQ(tooLong.output, "1: a system call failed, error 87\n");

    ChildProcess reader("juntoractl", {"lock", "hold", "/a.opj", "read", "--timeout", "60000"});
    EXPECT_TRUE(writer.writeLine("the end of the input counts, nothing else"));
    writer.closeInput();
    EXPECT_EQ(writer.wait(), 0);
    EXPECT_EQ(reader.readLine(), "0: success");
    watcher.kill(SIGTERM);
    EXPECT_EQ(watcher.wait(), 0);
    const json read = {{"file", "C:\\a.opj"},
                       {"status", 2},
                       {"bits", {{{"value", 2}, {"meaning", "somebody has a read lock"}}}}};
    EXPECT_EQ(json::parse(control({"lock", "status", "/a.opj", "--json"}).output), read);
    reader.kill(SIGINT);
    EXPECT_EQ(reader.wait(), 0);
    EXPECT_EQ(status("/a.opj"), "0\n");
    EXPECT_FALSE(hubRuns());
}

TEST_F(LockCommandTest, WrongUsage) {
    const std::vector<std::vector<std::string>> wrong = {
        {"lock"},
        {"lock", "status"},
        {"lock", "status", "a", "b"},
        {"lock", "hold", "a"},
        {"lock", "hold", "a", "both"},
        {"lock", "hold", "a", "read", "--timeout", "-1"},
        {"lock", "hold", "a", "read", "--timeout", "soon"},
        {"lock", "hold", "a", "read", "--timeout", "4294967295"},
    };
    for (const auto& arguments : wrong) {
        const Outcome outcome = control(arguments);
        EXPECT_EQ(outcome.code, 2) << testing::PrintToString(arguments);
        EXPECT_NE(outcome.errors, "") << testing::PrintToString(arguments);
    }
}

}  // namespace
}  // namespace juntora::test
