// Files that tools hold, over the real hub: from `juntoractl tool` to the activity list.
#include <csignal>
#include <fstream>

#include "tests/tools/ToolsFixture.h"

namespace juntora::test {
namespace {

using nlohmann::json;

class FileCommandTest : public ToolsTest {
protected:
    /// The file columns of the tool's lines.
    static json linesOf(const Tool& tool) {
        json found = json::array();
        for (json line : json::parse(control({"apps", "--json"}).output)) {
            if (line["id"] == tool.id()) {
                line.erase("name");
                line.erase("id");
                found.push_back(line);
            }
        }
        return found;
    }
};

TEST_F(FileCommandTest, HeldSharedRefusedMarkedAndGivenBack) {
    const std::string folder = sandbox().temporaryFolder();
    const std::string file = folder + "/My Board.opj";
    std::ofstream(file) << "a board";
    Tool first("Draftel");
    Tool second("Sketchel");
    json answer = first.ask("open \"" + file + "\" 1");
    EXPECT_EQ(answer["result"], 0);
    EXPECT_EQ(answer["free"], true);
    EXPECT_EQ(second.result("open \"C:" + folder + "/./MY BOARD.OPJ\" r"), 0);
    answer = second.ask("query \"" + file + "\" r");
    EXPECT_EQ(answer["free"], false);
    EXPECT_EQ(answer["holder"], second.id()) << "the newest row";
    answer = first.ask("open \"" + file + "\" r/w");
    EXPECT_EQ(answer["free"], false);
    EXPECT_EQ(answer["holder"], second.id());

    EXPECT_EQ(first.result("set-flags \"" + file + "\" 5"), std::stoi(first.id(), nullptr, 16));
    answer = second.ask("find-flags \"" + file + "\" 4095");
    EXPECT_EQ(answer["holder"], first.id());
    EXPECT_EQ(answer["flags"], 5);
    EXPECT_EQ(second.ask("find-flags \"" + file + "\" 4095 " + second.id())["flags"], 0);
    EXPECT_EQ(linesOf(first),
              json::parse(R"([{"file":"My Board.opj","access":"r","marked":true}])"))
        << "a file that is there goes by its name";
    EXPECT_NE(first.result("clear-flags \"" + file + "\" 1"), 0);
    EXPECT_EQ(first.result("close \"" + file + "\" 1"), 1);
    EXPECT_EQ(linesOf(first).at(0)["file"], "My Board.opj") << "another's newer row: not closed";
    EXPECT_EQ(second.result("close \"" + file + "\" 1"), 1);
    // It has gone from the disk, and its line still can be found.
    std::remove(file.c_str());
    EXPECT_EQ(first.result("close \"" + file + "\" 1"), 1);
    EXPECT_EQ(linesOf(first), json::parse(R"([{"file":"","access":"","marked":false}])"));
    EXPECT_EQ(first.ask("query \"" + file + "\" 3")["free"], true);
}

TEST_F(FileCommandTest, OfOneNameInTwoFoldersAreTwoLines) {
    const std::string folder = sandbox().temporaryFolder();
    for (const char* part : {"/a.opj", "/A.opj"}) {
        std::ofstream(folder + part) << part;
    }
    const std::string other = sandbox().runtimeFolder() + "/a.opj";
    std::ofstream(other) << "other";
    Tool tool("Draftel");
    EXPECT_EQ(tool.result("open " + folder + "/a.opj 1"), 0);
    EXPECT_EQ(tool.result("open " + other + " 2"), 0);
    EXPECT_EQ(linesOf(tool).size(), 2U);
    EXPECT_EQ(tool.result("close " + folder + "/a.opj 1"), 1);
    EXPECT_EQ(linesOf(tool), json::parse(R"([{"file":"a.opj","access":"w","marked":false}])"));
}

TEST_F(FileCommandTest, OfAKilledToolAreFreeAgain) {
    Tool watcher("Sketchel");
    Tool holder("Draftel");
    EXPECT_EQ(holder.result("open /held 3"), 0);
    EXPECT_EQ(holder.result("open /held/too 2"), 0);
    EXPECT_EQ(watcher.ask("open /held 1")["holder"], holder.id());
    EXPECT_EQ(watcher.result("watch-id " + holder.id()), 1);
    holder.process().kill(SIGKILL);
    EXPECT_EQ(watcher.next("record")["text"], "0," + holder.id() + ",Draftel;0");
    EXPECT_EQ(watcher.result("open /held 3"), 0);
    EXPECT_EQ(watcher.result("open /held/too 3"), 0);
}

}  // namespace
}  // namespace juntora::test
