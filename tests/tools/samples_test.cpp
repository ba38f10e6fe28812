// The sample tools, from the start of the hub to its end.
#include <csignal>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using SamplesTest = ToolsTest;

TEST_F(SamplesTest, AToolStartsTheHubAndTheLastOneEndsIt) {
    ChildProcess draftel("draftel");
    const std::string line = draftel.readLine().value_or("");
    ASSERT_EQ(line.substr(0, 24), "Draftel;0: signed on as ");
    const std::string id = line.substr(24);
    EXPECT_EQ(control({"command", id, "one\ntwo"}).code, 0);
    EXPECT_EQ(draftel.readLine(), "Draftel;0: record 30 from ffffffff: one\\x0atwo");
    {
        // Planchet sees a tool come late, and stays for it.
        Tool late("Late");
        draftel.kill(SIGTERM);
        EXPECT_EQ(draftel.wait(), 0);
        while (late.result("find Planchet") == 0) {
        }
        EXPECT_EQ(late.result("watch Planchet"), 1);
        late.process().writeLine("quit");
        EXPECT_EQ(late.process().wait(), 0);
    }
    EXPECT_TRUE(hubEnds());
}

TEST_F(SamplesTest, TheLeastThatMakesAToolServesRecordsAndLeaves) {
    ChildProcess minimal("minimal");
    Tool tool("Draftel");
    while (tool.result("find Minimal") == 0) {
    }
    const std::string id = tool.ask("find Minimal").value("id", "");
    EXPECT_EQ(tool.result("send 30 " + id + " 10 one\ttwo"), 1);
    EXPECT_EQ(control({"close-all"}).code, 0);
    EXPECT_EQ(minimal.readAll(),
              "signed on as Minimal;0\n30 from " + tool.id() + ": one\\x09two\n");
    EXPECT_EQ(minimal.wait(), 0);
    EXPECT_TRUE(hubEnds());
}

TEST_F(SamplesTest, ThereIsOnePlanchet) {
    Tool tool("Draftel");
    while (tool.result("find Planchet") == 0) {
    }
    ChildProcess second("planchet");
    EXPECT_EQ(second.wait(), 0);
    EXPECT_EQ(tool.result("find Planchet;1"), 0);
}

TEST_F(SamplesTest, WithoutAHubAToolSaysSo) {
    ChildProcess draftel("draftel", {}, {{"JUNTORA_DESKTOP=no/such"}, "", true});
    EXPECT_EQ(draftel.wait(), 1);
    EXPECT_NE(draftel.errors().find("Draftel: no window"), std::string::npos) << draftel.errors();
}

}  // namespace
}  // namespace juntora::test
