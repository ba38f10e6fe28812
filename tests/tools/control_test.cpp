// juntoractl's commands against the real hub.
#include <csignal>
#include <iterator>
#include <sstream>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;

class ControlTest : public ToolsTest {
protected:
    static std::vector<std::string> wordsOf(const char* line) {
        std::istringstream words(line);
        return {std::istream_iterator<std::string>(words), {}};
    }
    /// A watch that stands.
    static ChildProcess startWatch(const std::string& arguments) {
        ChildProcess watch("/bin/sh", {"-c", "exec " + ProgramFolder() + "/juntoractl watch " +
                                                 arguments + " 2>&1"});
        EXPECT_NE(watch.readLineWith("juntoractl: watching "), std::nullopt);
        return watch;
    }
};

TEST_F(ControlTest, WrongUsage) {
    for (const char* line :
         {"", "bogus", "find", "find a b", "find a --bogus", "name xyz", "alive 0x10",
          "alive 123456789", "command 10", "status 10 text code", "watch", "apps running"}) {
        const Outcome outcome = control(wordsOf(line));
        EXPECT_EQ(outcome.code, 2) << line;
        EXPECT_NE(outcome.errors, "") << line;
        EXPECT_EQ(outcome.output, "");
    }
    const Outcome help = control({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_NE(help.output.find("Examples:"), std::string::npos);
    EXPECT_EQ(control({"tool", "--help"}).code, 0);
}

TEST_F(ControlTest, WithoutAHub) {
    for (const char* line :
         {"apps", "apps --json", "find x", "name 10", "alive 10", "running", "show", "close-all",
          "command 10 x", "watch x", "monitor", "status 10 x -1", "tool X --no-start"}) {
        const Outcome outcome = control(wordsOf(line));
        EXPECT_EQ(outcome.code, 3) << line;
        EXPECT_EQ(outcome.output, "") << line;
        EXPECT_NE(outcome.errors.find("hub"), std::string::npos) << line;
    }
    EXPECT_FALSE(hubRuns());
}

TEST_F(ControlTest, Questions) {
    Tool draftel("Draftel");
    EXPECT_EQ(draftel.name(), "Draftel;0");
    EXPECT_EQ(control({"find", "draftel"}).output, draftel.id() + "\n");
    EXPECT_EQ(json::parse(control({"find", "Draftel;0", "--json"}).output)["id"], draftel.id());
    EXPECT_EQ(control({"name", draftel.id()}).output, "Draftel;0\n");
    EXPECT_EQ(control({"alive", draftel.id()}).code, 0);
    Tool odd("Odd\x1b[2J\xC2\x9B");
    EXPECT_EQ(control({"name", odd.id()}).output, "Odd\\x1b[2J\\xc2\\x9b;0\n")
        << "no name steers a terminal";

    Outcome none = control({"find", "Nobody", "--json"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.output, "{\"name\":\"Nobody\",\"id\":null}\n");
    none = control({"name", "7fff7fff"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.output, "");
    EXPECT_NE(none.errors.find("7fff7fff"), std::string::npos);
    none = control({"alive", "0", "--json"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.output, "{\"id\":\"0\",\"alive\":false}\n");
}

TEST_F(ControlTest, Apps) {
    Tool draftel("Draftel");
    Tool second("Draftel");
    const json apps = json::parse(control({"apps", "--json"}).output);
    std::map<std::string, json> byName;
    for (const json& app : apps) {
        byName[app["name"]] = app;
    }
    const json expected = {{"name", "Draftel;1"},
                           {"id", second.id()},
                           {"file", ""},
                           {"access", ""},
                           {"marked", false}};
    EXPECT_EQ(byName["Draftel;1"], expected);
    EXPECT_EQ(byName["Draftel;0"]["id"], draftel.id());
    EXPECT_EQ(byName.count("juntoractl;0"), 0U) << "a look leaves no row";

    const std::string table = control({"apps"}).output;
    const std::size_t column = table.find("ID");
    const std::size_t line = table.find("Draftel;1");
    EXPECT_EQ(table.substr(line + column, second.id().size()), second.id()) << table;
    EXPECT_GE(json::parse(control({"running", "--json"}).output)["rows"], 2);
}

TEST_F(ControlTest, Records) {
    Tool draftel("Draftel");
    EXPECT_EQ(control({"command", draftel.id(), "open \"a b\""}).code, 0);
    json record = draftel.next("record");
    EXPECT_EQ(record["opcode"], 30);
    EXPECT_EQ(record["text"], "open \"a b\"");
    EXPECT_EQ(record["sender"], "ffffffff") << "who only looks has no identity";
    EXPECT_EQ(control({"command", draftel.id(), "--", "-x"}).code, 0);
    EXPECT_EQ(draftel.next("record")["text"], "-x");
    EXPECT_EQ(control({"status", draftel.id(), "saved", "-3", "--json"}).output,
              "{\"result\":1}\n");
    record = draftel.next("record");
    EXPECT_EQ(record["opcode"], 50);
    EXPECT_EQ(record["text"], "saved -3");

    EXPECT_EQ(control({"command", "7fff7fff", "x"}).code, 1);
    EXPECT_EQ(control({"status", "7fff7fff", "x", "1"}).code, 1);
    EXPECT_EQ(control({"command", "0", "JUNTORA_IS_SKETCHEL_RUNNING"}).output, "0\n");
    EXPECT_EQ(control({"show"}).code, 0);
}

TEST_F(ControlTest, WatchTellsEachDepartureAndEndsWithTheLast) {
    Tool first("Draftel");
    Tool second("Sketchel");
    Tool asker("Asker");
    ChildProcess watch = startWatch("Draftel " + second.id() + " 'Draftel;0' --json");
    first.process().writeLine("quit");
    const json expected = {
        {"event", "departed"}, {"orderly", true}, {"id", first.id()}, {"name", "Draftel;0"}};
    EXPECT_EQ(json::parse(watch.readLine().value_or("{}")), expected);
    EXPECT_TRUE(watch.isRunning());
    second.process().kill(SIGKILL);
    const json departure = json::parse(watch.readLine().value_or("{}"));
    EXPECT_EQ(departure.value("orderly", true), false);
    EXPECT_EQ(departure.value("name", ""), "Sketchel;0");
    EXPECT_EQ(watch.wait(), 0);
    EXPECT_EQ(asker.result("find juntoractl"), 0) << "it has signed off";

    const Outcome unknown = control({"watch", "Asker", "Nobody"});
    EXPECT_EQ(unknown.code, 1);
    EXPECT_NE(unknown.errors.find("Nobody"), std::string::npos);
}

TEST_F(ControlTest, MonitorTellsWhatHappens) {
    Tool draftel("Draftel");
    ChildProcess monitor("juntoractl", {"monitor", "--json"});
    const auto next = [&monitor](const std::string& name) {
        for (;;) {
            json event = json::parse(monitor.readLineWith(name).value_or("{}"));
            if (event.empty() || event["name"] == name) {
                return event;
            }
        }
    };
    EXPECT_EQ(next("Draftel;0")["event"], "present");
    {
        Tool sketchel("Sketchel");
        EXPECT_EQ(next("Sketchel;0")["event"], "came");
        sketchel.process().writeLine("quit");
        const json event = next("Sketchel;0");
        EXPECT_EQ(event["event"], "went");
        EXPECT_EQ(event["orderly"], true);
        EXPECT_EQ(event["id"], sketchel.id());
    }
    draftel.process().kill(SIGKILL);
    const json event = next("Draftel;0");
    EXPECT_EQ(event["event"], "went");
    EXPECT_EQ(event["orderly"], false);
    monitor.kill(SIGINT);
    EXPECT_EQ(monitor.wait(), 0);
}

TEST_F(ControlTest, CloseAllClosesWhateverIsOpen) {
    Tool draftel("Draftel");
    ChildProcess sample("sketchel");
    EXPECT_NE(sample.readLine(), std::nullopt);
    EXPECT_EQ(control({"close-all"}).code, 0);
    EXPECT_EQ(draftel.process().wait(), 0);
    EXPECT_EQ(sample.wait(), 0);
    EXPECT_TRUE(hubEnds());
}

TEST_F(ControlTest, AHubThatDiesIsToldOf) {
    Tool draftel("Draftel");
    ChildProcess watch = startWatch("Draftel");
    ChildProcess monitor("juntoractl", {"monitor"});
    EXPECT_TRUE(monitor.readLineWith("Draftel;0"));
    killHub();
    EXPECT_EQ(watch.wait(), 3);
    EXPECT_EQ(monitor.wait(), 3);
    EXPECT_EQ(draftel.result("alive " + draftel.id()), 0);
}

}  // namespace
}  // namespace juntora::test
