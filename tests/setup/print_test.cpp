// Where debug prints go, by a program that makes some.
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

constexpr char PRINTED[] = "1 of 2: %s\n2 of 2: b\n";

class DebugPrintTest : public TestDesktop {
protected:
    DebugPrintTest() { std::filesystem::create_directories(m_folder + "/folder"); }

    /// Prints "%s" and "b", and checks that all goes well and what comes out.
    void print(const std::optional<std::string>& destination, const std::string& output,
               const std::string& errors, const std::string& second = "b") const {
        ChildProcess::Options options{{}, m_folder, true};
        if (destination) {
            options.environment.push_back("DEBUGPRINT=" + *destination);
        }
        ChildProcess printer("setup_printer", {"%s", second}, options);
        EXPECT_EQ(printer.readAll(), output);
        EXPECT_EQ(printer.wait().value_or(-1), 0);
        EXPECT_EQ(printer.errors(), errors);
    }

    std::string take(const std::string& file) const {
        std::ifstream stream(m_folder + "/" + file, std::ios::binary);
        std::string text{std::istreambuf_iterator<char>(stream), {}};
        std::filesystem::remove(m_folder + "/" + file);
        return text;
    }

    std::string m_folder = sandbox().runtimeFolder() + "/debug";
};

TEST_F(DebugPrintTest, GoesToStreams) {
    print("STDOUT", PRINTED, "");
    print("debugWindow", "", PRINTED);
    print("stdout", "1 of 2: %s\n2 of 2: " + std::string(3000, 'x') + "\n", "",
          std::string(3000, 'x'));
    print("debugwindow", "", "1 of 2: %s\n2 of 2: " + std::string(1015, 'x'),
          std::string(3000, 'x'));
    EXPECT_FALSE(std::filesystem::exists(m_folder + "/z80.dbg"));
}

TEST_F(DebugPrintTest, GoesToFiles) {
    print("out.txt", "", "");
    print(m_folder + "/out.txt", "", "");
    EXPECT_EQ(take("out.txt"), std::string(PRINTED) + PRINTED);
    EXPECT_EQ(take("z80.dbg"), "");
    for (const std::optional<std::string>& destination :
         {std::optional<std::string>(), std::optional<std::string>(""),
          std::optional<std::string>("missing/out.txt"), std::optional<std::string>("folder")}) {
        print(destination, "", "");
        EXPECT_EQ(take("z80.dbg"), PRINTED) << destination.value_or("unset");
    }
    std::ofstream(m_folder + "/z80.dbg") << "before\n";
    print(std::nullopt, "", "");
    EXPECT_EQ(take("z80.dbg"), std::string("before\n") + PRINTED);
}

TEST_F(DebugPrintTest, OutlivesItsReader) {
    ChildProcess shell(
        "/bin/sh",
        {"-c", "{ read go; \"$0\" x y; echo code $? >&2; } | { exec <&-; echo closed; }",
         ProgramFolder() + "/setup_printer"},
        {{"DEBUGPRINT=stdout"}, m_folder, true});
    EXPECT_EQ(shell.readLine(), "closed");
    shell.writeLine("go");
    EXPECT_EQ(shell.wait(), 0);
    EXPECT_EQ(shell.errors(), "code 0\n");

    ASSERT_EQ(mkfifo((m_folder + "/pipe").c_str(), 0600), 0);
    print("pipe", "", "");
    EXPECT_EQ(take("z80.dbg"), PRINTED) << "nobody has ever read there";
}

TEST_F(DebugPrintTest, SaysNothingWhereNothingCanBeWritten) {
    print("/dev/full", "", "");
    EXPECT_EQ(take("z80.dbg"), "");
    std::filesystem::create_directory(m_folder + "/z80.dbg");
    print(std::nullopt, "", "");
    print("missing/out.txt", "", "");
}

}  // namespace
}  // namespace juntora::test
