// Coming to a desktop: whom it lets in, and what it makes of files that it cannot use.
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "tests/platform/Peer.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

namespace fs = std::filesystem;

class OpeningTest : public ::testing::Test {
protected:
    /// Starts a program that cannot come in, and returns what it says. `setting` takes the place of
    /// the sandbox's own.
    std::string refusal(const std::string& setting = "UNUSED=") {
        std::vector<std::string> environment = sandbox.environment();
        environment.push_back(setting);
        ChildProcess process("platform_peer", {"refused"}, {environment, "", true});
        EXPECT_EQ(1, process.wait().value_or(-1));
        EXPECT_EQ(0U, process.errors().find("juntora: ")) << process.errors();
        return process.errors();
    }

    /// Leaves a segment as a killed process does, and a block in it.
    void leaveSegment() {
        Peer peer = makePeer();
        peer.ask("mapping block 100");
        peer.ask("poke block 5");
        peer.process.kill();
        peer.process.wait();
    }

    Peer makePeer() {
        sandbox.enter();
        return Peer();
    }

    std::string segment() const { return sandbox.desktopFolder() + "/segment"; }

    DesktopSandbox sandbox;
};

std::string headOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string head(4096, '\0');
    file.read(head.data(), static_cast<std::streamsize>(head.size()));
    return head;
}

TEST_F(OpeningTest, AFileThatIsNoDesktopOfThisProgramIsRefusedAndLeftAlone) {
    leaveSegment();
    const auto size = fs::file_size(segment());
    const std::string whole = headOf(segment());
    struct Damage {
        const char* says;
        std::function<void()> make;
    };
    const auto overwrite = [&](std::streamoff at, char byte) {
        std::fstream file(segment(), std::ios::binary | std::ios::in | std::ios::out);
        file.seekp(at);
        file.put(byte);
    };
    const std::array damages{
        Damage{"has layout", [&] { overwrite(8, 77); }},
        Damage{"is not a desktop's", [&] { overwrite(0, 'X'); }},
        Damage{"was cut short", [&] { fs::resize_file(segment(), size / 2); }},
        Damage{"is not a desktop's", [&] { fs::resize_file(segment(), 10); }},
        Damage{"is not a desktop's", [&] { fs::resize_file(segment(), 0); }},
    };
    for (const Damage& damage : damages) {
        damage.make();
        const std::string before = headOf(segment());
        const auto damagedSize = fs::file_size(segment());
        EXPECT_NE(std::string::npos, refusal().find(damage.says));
        EXPECT_EQ(before, headOf(segment()));
        EXPECT_EQ(damagedSize, fs::file_size(segment()));
        fs::resize_file(segment(), size);
        std::fstream(segment(), std::ios::binary | std::ios::in | std::ios::out) << whole;
    }
    makePeer();
}

TEST_F(OpeningTest, LinksFoldersAndOtherPeoplesFilesAreRefused) {
    leaveSegment();
    const std::string aside = sandbox.runtimeFolder() + "/aside";
    fs::rename(segment(), aside);
    fs::create_symlink(aside, segment());
    EXPECT_NE(std::string::npos, refusal().find("cannot be opened"));
    fs::remove(segment());
    fs::create_directory(segment());
    EXPECT_NE(std::string::npos, refusal().find("segment"));
    fs::remove(segment());
    ASSERT_EQ(0, mkfifo(segment().c_str(), 0600));
    EXPECT_NE(std::string::npos, refusal().find("is no file"));
    fs::remove(segment());
    fs::rename(aside, segment());
    if (geteuid() == 0) {
        ASSERT_EQ(0, chown(segment().c_str(), 12345, 12345));
        EXPECT_NE(std::string::npos, refusal().find("another user"));
        ASSERT_EQ(0, chown(segment().c_str(), 0, 0));
    }
    fs::permissions(sandbox.desktopFolder(), fs::perms::owner_all | fs::perms::others_read);
    EXPECT_NE(std::string::npos, refusal().find("open to others"));
    fs::permissions(sandbox.desktopFolder(), fs::perms::owner_all);
    Peer next = makePeer();
    EXPECT_EQ(0, next.ask("mapping block 100")) << "of what the dead have left nothing shows";
    EXPECT_EQ(0, next.ask("peek block"));
}

TEST_F(OpeningTest, UnfitNamesAndPlacesAreRefused) {
    for (const char* name : {"../elsewhere", ".hidden", "a/b", "with blank"}) {
        EXPECT_NE(std::string::npos,
                  refusal(std::string("JUNTORA_DESKTOP=") + name).find("JUNTORA_DESKTOP"));
    }
    refusal("JUNTORA_DESKTOP=" + std::string(65, 'n'));
    EXPECT_NE(std::string::npos,
              refusal("XDG_RUNTIME_DIR=/nonexistent/place").find("XDG_RUNTIME_DIR"));
}

TEST_F(OpeningTest, TheLastOneOutLeavesNothing) {
    {
        Peer first = makePeer();
        Peer second = makePeer();
        first.process.closeInput();
        EXPECT_EQ(0, first.process.wait());
        EXPECT_TRUE(fs::exists(segment()));
        EXPECT_EQ(0, second.ask("mutex m"));
        second.process.closeInput();
        EXPECT_EQ(0, second.process.wait());
    }
    EXPECT_FALSE(fs::exists(sandbox.desktopFolder()));
}

}  // namespace
}  // namespace juntora::test
