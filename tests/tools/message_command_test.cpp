// juntoractl's commands for catalogued messages and remembered answers, which need no hub.
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;

class MessageCommandTest : public ToolsTest {
protected:
    MessageCommandTest() {
        setenv("JUNTORA_REGISTRY", (sandbox().runtimeFolder() + "/registry").c_str(), 1);
    }
    ~MessageCommandTest() override {
        EXPECT_FALSE(hubRuns());
        unsetenv("JUNTORA_REGISTRY");
    }

    static Outcome message(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "message");
        return control(arguments);
    }
};

TEST_F(MessageCommandTest, PrintsWhatAMessageSays) {
    EXPECT_EQ(
        message({"text", "TVCOMMN", "11077", "--param", "s:admin", "--param", "d:0.5"}).output,
        "INFO(TVCOMMN-11077):  Registration done for admin: 0.5\n");
    EXPECT_EQ(
        message({"body", "TVCOMMN", "11077", "--param", "c:%", "--param", "s:%1:\x1b"}).output,
        "Registration done for %: %1:\\x1b\n");
    EXPECT_EQ(
        json::parse(message({"text", "TVCOMMN", "11077", "--param", "i:-5", "--param",
                             "k:18446744073709551615", "--json"})
                        .output),
        (json{{"module", "TVCOMMN"},
              {"number", 11077},
              {"text", "INFO(TVCOMMN-11077):  Registration done for -5: 18446744073709551615"}}));
    const json help = json::parse(message({"help", "TVCOMMN", "1821", "--json"}).output);
    EXPECT_TRUE(help["help"].get<std::string>().starts_with("<!DOCTYPE html>"));

    const Outcome box = message({"box", "TVCOMMN", "1802"});
    EXPECT_EQ(box.output, "1\n");
    EXPECT_NE(box.errors.find("WARNING(TVCOMMN-1802):  The file is in use"), std::string::npos);
    EXPECT_EQ(message({"dialog", "TVCOMMN", "1802", "--style", "4", "--json"}).output,
              "{\"button\":6}\n");
}

TEST_F(MessageCommandTest, ListsWhatTheCataloguesHave) {
    const std::string all = message({"list"}).output;
    EXPECT_NE(all.find("\nTVCON-2  Juntora cannot reach the message bus"), std::string::npos);
    EXPECT_NE(all.find("TVCOMMN-11077  Registration done for %1: %2\n"), std::string::npos);
    const std::string line = message({"list", "TVCON", "--json"}).output;
    const json first = json::parse(line.substr(0, line.find('\n')));
    EXPECT_EQ(first["kind"], "error");
    EXPECT_EQ(first["parameters"], 1);

    // A deployment adds a module; what is wrong with its file is told, what is good of it is there.
    const std::string folder = sandbox().runtimeFolder() + "/catalogues";
    std::filesystem::create_directory(folder);
    std::ofstream(folder + "/modules.txt") << "TVOWN own.xml\n";
    std::ofstream(folder + "/own.xml")
        << "<catalogue module='TVOWN'><message number='3' kind='plain'><text>Ours.</text>"
           "</message>\n<message number='x' kind='plain'><text>t</text></message></catalogue>";
    setenv("JUNTORA_CATALOGUES", folder.c_str(), 1);
    const Outcome own = message({"text", "TVOWN", "3"});
    EXPECT_EQ(own.code, 0);
    EXPECT_EQ(own.output, "MESSAGE(TVOWN-3):  Ours.\n");
    EXPECT_NE(own.errors.find(folder + "/own.xml:2: message \"x\": its number is not one"),
              std::string::npos)
        << own.errors;
    unsetenv("JUNTORA_CATALOGUES");
}

TEST_F(MessageCommandTest, RefusesWithAReason) {
    const struct {
        std::vector<std::string> arguments;
        int code;
        std::string reason;
    } cases[] = {
        {{"text", "TVCOMMN", "99"}, 1, "no catalogue has the message TVCOMMN-99"},
        {{"box", "TVNONE", "1"}, 1, "no catalogue has the message TVNONE-1"},
        {{"help", "TVCOMMN", "1801"}, 1, "no help page"},
        {{"list", "TVNONE"}, 1, "TVNONE"},
        {{"text", "TVCOMMN", "4294967296"}, 2, "is no number from 0"},
        {{"text", "TVCOMMN", "-1"}, 2, ""},
        {{"text", "TVCOMMN", "11077"}, 2, "another number of parameters than 0"},
        {{"text", "TVCOMMN", "1801", "--param", "s:x"}, 2, "than 1"},
        {{"text", "TVCOMMN", "1801", "--param", "i:9999999999"}, 2, "\"i:9999999999\""},
        {{"text", "TVCOMMN", "1801", "--param", "c:xy"}, 2, "\"c:xy\""},
        {{"text", "TVCOMMN", "1801", "--param", "x"}, 2, "\"x\""},
        {{"dialog", "TVCOMMN", "1801", "--style", "7"}, 2, "--style"},
        {{"text", "TVCOMMN"}, 2, "NUMBER"},
        {{}, 2, ""},
    };
    for (const auto& each : cases) {
        const Outcome outcome = message(each.arguments);
        EXPECT_EQ(outcome.code, each.code) << testing::PrintToString(each.arguments);
        EXPECT_EQ(outcome.output, "");
        EXPECT_NE(outcome.errors, "");
        EXPECT_NE(outcome.errors.find(each.reason), std::string::npos) << outcome.errors;
    }
}

TEST_F(MessageCommandTest, ForgetsAnswersOfAllPrograms) {
    const auto set = [](const std::string& program, const std::string& key,
                        const std::string& value) {
        EXPECT_EQ(control({"registry", "set",
                           "HKCU\\Software\\Voltara\\Settings\\" + program + "\\Donot Show Dialog",
                           key, value})
                      .code,
                  0);
    };
    EXPECT_EQ(control({"answers"}).output, "");
    set("draftel", "TVCOMMN-1821", "7");
    set("juntoractl", "TVCOMMN-1821", "6");
    set("juntoractl", "TVCOMMN-1802", "3");
    set("juntoractl", "TVCOMMN-1803", "0");
    EXPECT_EQ(control({"answers"}).output,
              "draftel  TVCOMMN-1821  7\njuntoractl  TVCOMMN-1802  3\n"
              "juntoractl  TVCOMMN-1821  6\n");
    EXPECT_EQ(message({"dialog", "TVCOMMN", "1821"}).output, "6\n") << "as it was answered";
    EXPECT_EQ(control({"answers", "--forget", "TVCOMMN-1821"}).code, 0);
    EXPECT_EQ(control({"answers", "--json"}).output,
              "{\"program\":\"juntoractl\",\"key\":\"TVCOMMN-1802\",\"answer\":\"3\"}\n");
    const Outcome again = control({"answers", "--forget", "TVCOMMN-1821"});
    EXPECT_EQ(again.code, 1);
    EXPECT_NE(again.errors.find("no answer is remembered for TVCOMMN-1821"), std::string::npos);
}

}  // namespace
}  // namespace juntora::test
