// juntoractl's commands for the registry, which need no hub.
#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;

class RegistryCommandTest : public ToolsTest {
protected:
    ~RegistryCommandTest() override { EXPECT_FALSE(hubRuns()); }

    static Outcome registry(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "registry");
        return control(arguments);
    }
    static void set(const std::string& key, const std::string& name, const std::string& value) {
        const Outcome outcome = registry({"set", key, name, value});
        EXPECT_EQ(outcome.code, 0) << outcome.errors;
        EXPECT_EQ(outcome.output, "");
    }
};

TEST_F(RegistryCommandTest, SetsAndGetsValues) {
    set("HKCU\\Software\\Tarvex", "CmdLine", "a \"b\"\n\x1b[1m");
    EXPECT_EQ(registry({"get", "hkcu/SOFTWARE/tarvex", "cmdline"}).output,
              "a \"b\"\\x0a\\x1b[1m\n");
    EXPECT_EQ(
        json::parse(
            registry({"get", "HKEY_CURRENT_USER\\Software\\Tarvex\\", "CmdLine", "--json"}).output),
        (json{{"key", "HKCU\\Software\\Tarvex"},
              {"name", "CmdLine"},
              {"type", "string"},
              {"value", "a \"b\"\n\x1b[1m"}}));
    EXPECT_EQ(
        registry({"set", "HKLM\\Software", "n", "0xffffffff", "--type", "number", "--json"}).output,
        "{\"key\":\"HKLM\\\\Software\",\"name\":\"n\",\"type\":\"number\","
        "\"value\":4294967295}\n");
    EXPECT_EQ(registry({"get", "HKLM/Software", "n"}).output, "4294967295\n");
    set("HKLM\\Software\\Classes\\.sch", "", "Draftel.Sch");
    EXPECT_EQ(registry({"get", "HKCR\\.sch"}).output, "Draftel.Sch\n");
}

TEST_F(RegistryCommandTest, ListsAndDeletesTrees) {
    set("HKCU\\Top\\b/c\\low", "x", "1");
    set("HKCU\\Top\\a", "", "first");
    EXPECT_EQ(registry({"list", "HKCU/Top"}).output,
              "HKCU\\Top\n"
              "HKCU\\Top\\a\n"
              "    (default)  string  first\n"
              "HKCU\\Top\\b/c\n"
              "HKCU\\Top\\b/c\\low\n"
              "    x  string  1\n");
    const json listing = json::parse(registry({"list", "HKCU\\Top\\a", "--json"}).output);
    EXPECT_EQ(
        listing,
        json::array({{{"key", "HKCU\\Top\\a"},
                      {"values", {{{"name", ""}, {"type", "string"}, {"value", "first"}}}}}}));
    EXPECT_EQ(registry({"delete", "HKCU\\Top\\b/c\\low", "X", "--json"}).output,
              "{\"deleted\":\"HKCU\\\\Top\\\\b/c\\\\low\",\"name\":\"X\"}\n");
    EXPECT_EQ(registry({"get", "HKCU\\Top\\b/c\\low", "x"}).code, 1);
    EXPECT_EQ(registry({"delete", "HKCU\\Top\\a", ""}).code, 0);
    EXPECT_EQ(registry({"get", "HKCU\\Top\\a"}).code, 1);
    EXPECT_EQ(registry({"delete", "HKCU\\Top"}).code, 0);
    EXPECT_EQ(registry({"list", "HKCU\\Top"}).code, 1);
    EXPECT_NE(registry({"list", "HKCU"}).output.find("\nHKCU\\Software\\Classes\n"),
              std::string::npos);
}

TEST_F(RegistryCommandTest, RefusesWithoutOutput) {
    const struct {
        std::vector<std::string> arguments;
        int code;
    } cases[] = {
        {{"get", "HKCU\\none"}, 1},
        {{"get", "HKCU\\none", "--json"}, 1},
        {{"list", "HKCR\\none"}, 1},
        {{"delete", "HKLM\\none"}, 1},
        {{"set", "HKCU\\" + std::string(256, 'k'), "n", "v"}, 1},
        {{"delete", "HKCU"}, 2},
        {{"get", "HKXX\\a"}, 2},
        {{"get", ""}, 2},
        {{"set", "HKCU\\a", "n", "4294967296", "--type", "number"}, 2},
        {{"set", "HKCU\\a", "n", "1", "--type", "binary"}, 2},
        {{"set", "HKCU\\a", "n"}, 2},
        {{}, 2},
    };
    for (const auto& each : cases) {
        const Outcome outcome = registry(each.arguments);
        EXPECT_EQ(outcome.code, each.code) << testing::PrintToString(each.arguments);
        EXPECT_EQ(outcome.output, "") << testing::PrintToString(each.arguments);
        EXPECT_NE(outcome.errors, "") << testing::PrintToString(each.arguments);
    }
    EXPECT_EQ(registry({"get", "HKCU\\a", "n"}).code, 1) << "nothing is left of a refused set";
}

}  // namespace
}  // namespace juntora::test
