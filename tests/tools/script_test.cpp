// `juntoractl tool`, driven by lines.
#include <csignal>
#include <fstream>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;
using ScriptTest = ToolsTest;

TEST_F(ScriptTest, RequestsAndWhatTheyYield) {
    Tool tool("Draftel");
    Tool other("Sketchel");
    json answer = tool.ask("find Sketchel");
    EXPECT_EQ(answer["event"], "result");
    EXPECT_EQ(answer["command"], "find");
    EXPECT_EQ(answer["id"], other.id());
    answer = tool.ask("find Nobody");
    EXPECT_EQ(answer["result"], 0);
    EXPECT_FALSE(answer.contains("id"));
    EXPECT_EQ(tool.ask("name " + other.id())["reply"], "Sketchel;0");
    EXPECT_EQ(tool.result("alive " + other.id()), 1);
    EXPECT_EQ(tool.result("watch Nobody"), 0);
    EXPECT_EQ(tool.result("watch-id " + other.id()), 1);
    EXPECT_EQ(tool.ask("send 14 0 4 " + other.id())["reply"], "Sket");

    other.process().writeLine("quit");
    const json notice = tool.next("record");
    EXPECT_EQ(notice["opcode"], 17);
    EXPECT_EQ(notice["sender"], "0");
    EXPECT_EQ(notice["text"], "1," + other.id() + ",Sketchel;0");
    EXPECT_EQ(other.process().wait(), 0);
}

TEST_F(ScriptTest, RecordsBetweenTools) {
    Tool first("Draftel");
    Tool second("Sketchel");
    const auto sends = [&](const std::string& command, int opcode, const std::string& text) {
        EXPECT_EQ(first.ask(command)["event"], "result") << command;
        const json record = second.next("record");
        EXPECT_EQ(record["opcode"], opcode) << command;
        EXPECT_EQ(record["sender"], first.id());
        EXPECT_EQ(record["text"], text);
    };
    const std::string id = second.id();
    const std::string text(5000, 'x');
    sends("command " + id + "  two  blanks ", 30, "two  blanks ");
    sends("command " + id + " \"say \"\"C:\\a\\\"\"\"", 30, "say \"C:\\a\\\"");
    sends("status " + id + " \"a b\" -7", 50, "a b -7");
    sends("post 30 " + id + " " + text, 30, text);
    sends("post 500 " + id, 500, "");
    sends("command " + id + " bytes \xE9\xFF", 30, "bytes \xEF\xBF\xBD\xEF\xBF\xBD");
    sends("send 41 " + id + " 10 " + text, 41, text);
    EXPECT_EQ(first.result("send 41 " + id + " 10 direct"), 1) << "past the hub";
}

TEST_F(ScriptTest, WhatIsNotUnderstoodIsAnsweredAndPassedOver) {
    Tool tool("Draftel");
    for (const char* line :
         {"bogus", "find", "find a b", "name xyz", "alive", "command 10", "status 10 text",
          "status 10 text 5x", "status 10 two words 5", "send 70000 0 2", "send 31 0 0",
          "send 31 0", "post -1 0", "find \"open", "find \"a\"b", "\"\"", "quit now"}) {
        const json answer = tool.ask(line);
        EXPECT_EQ(answer["event"], "error") << line;
        EXPECT_NE(answer["text"], "") << line;
    }
    EXPECT_EQ(tool.ask(std::string("find a\0b", 8))["event"], "error");
    EXPECT_EQ(tool.ask("find " + std::string(3'000'000, 'x'))["event"], "error");
    EXPECT_EQ(tool.result("find Draftel\r"), std::stoi(tool.id(), nullptr, 16));
}

TEST_F(ScriptTest, TheEndOfInputAndQuitSignOff) {
    Tool observer("Observer");
    const Outcome lines = control({"tool", "Draftel"}, "\n  \nfind Draftel;0\nquit\nfind x");
    EXPECT_EQ(lines.code, 0);
    EXPECT_EQ(std::count(lines.output.begin(), lines.output.end(), '\n'), 2) << lines.output;
    EXPECT_EQ(observer.result("find Draftel"), 0);

    // A file at standard input, which no descriptor tells of, and a last line without an end.
    const std::string path = sandbox().temporaryFolder() + "/script";
    std::ofstream(path) << "find Observer\nname " << observer.id();
    ChildProcess shell("/bin/sh", {"-c", ProgramFolder() + "/juntoractl tool Draftel < " + path});
    const std::string output = shell.readAll();
    EXPECT_NE(output.find("\"reply\":\"Observer;0\""), std::string::npos) << output;
    EXPECT_EQ(shell.wait(), 0);
    EXPECT_EQ(observer.result("find Draftel"), 0);
}

TEST_F(ScriptTest, ItLeavesInOrderWhereverItEnds) {
    Tool observer("Observer");
    const auto leavesInOrder = [&](const std::string& name, const std::string& id) {
        const json notice = observer.next("record");
        EXPECT_EQ(notice["text"], "1," + id + "," + name) << name;
    };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        Tool tool("Draftel");
        ASSERT_EQ(observer.result("watch-id " + tool.id()), 1);
        tool.process().kill(signal);
        EXPECT_EQ(tool.process().wait(), 0);
        leavesInOrder("Draftel;0", tool.id());
    }
    // Nobody reads its output any more.
    ChildProcess shell("/bin/sh", {"-c", "exec 3<&0; " + ProgramFolder() +
                                             "/juntoractl tool Sketchel <&3 | head -n 1"});
    const json event = json::parse(shell.readLine().value_or("{}"));
    ASSERT_EQ(observer.result("watch-id " + event.value("id", "0")), 1);
    EXPECT_EQ(control({"command", event.value("id", "0"), "into the void"}).code, 0);
    shell.writeLine("find x");
    leavesInOrder("Sketchel;0", event.value("id", ""));
}

TEST_F(ScriptTest, ARefusal) {
    Tool hubStarter("Draftel");
    const Outcome outcome = control({"tool", "two words"});
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.output, "{\"event\":\"refused\"}\n");
    EXPECT_EQ(control({"tool", std::string(1000, 'n')}).code, 1);
}

}  // namespace
}  // namespace juntora::test
