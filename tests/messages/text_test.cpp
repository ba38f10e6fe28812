// Texts of catalogued messages, their trace, their names in texts, their help pages.
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>
#include <vector>

#include "messages/errorText.h"
#include "messages/messageFamily.h"
#include "messages/messageHelp.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"
#include "tests/messages/CatalogueFolder.h"
#include "tests/support/Descriptor.h"

namespace juntora::test {
namespace {

/// With messages of every kind in the module TVT.
class TextTest : public CatalogueFolder {
protected:
    TextTest() {
        write("modules.txt", "TVT t.xml\n");
        write("t.xml",
              catalogue("TVT",
                        "<message number='0' kind='plain'><text>A plain text.</text>"
                        "<help/></message>"
                        "<message number='1' kind='error'><text>No.</text></message>"
                        "<message number='4' kind='warning'><parameter/><parameter/>"
                        "<text>%2: %1, 100 %%, %2</text></message>"
                        "<message number='5' kind='information'><text>So it is.</text>"
                        "<help>&lt;p&gt;So.</help></message>"
                        "<message number='7' kind='question'><text>Is it?</text></message>"));
    }
    ~TextTest() override { setSessionLogCallback(nullptr); }

    template <class... Parameters>
    static std::string text(unsigned long number, const Parameters&... parameters) {
        std::string out = "unchanged";
        const int result = getMessageText(&out, "TVT", number, parameters...);
        EXPECT_EQ(result, out == "unchanged" ? -1 : 0);
        return out;
    }
    template <class... Parameters>
    static std::string body(unsigned long number, const Parameters&... parameters) {
        std::string out = "unchanged";
        const int result = getMessageBody(&out, "TVT", number, parameters...);
        EXPECT_EQ(result, out == "unchanged" ? -1 : 0);
        return out;
    }
};

TEST_F(TextTest, HasKindModuleAndNumberBeforeIt) {
    EXPECT_EQ(text(0), "MESSAGE(TVT-0):  A plain text.");
    EXPECT_EQ(text(1), "ERROR(TVT-1):  No.");
    EXPECT_EQ(text(5), "INFO(TVT-5):  So it is.");
    EXPECT_EQ(text(7), "QUESTION(TVT-7):  Is it?");
    EXPECT_EQ(body(7), "Is it?");
    EXPECT_EQ(text(4, "%2", 5), "WARNING(TVT-4):  5: %2, 100 %, 5");
    EXPECT_EQ(body(4, "a: b", ""), ": a: b, 100 %, ");
    EXPECT_EQ(body(4, 'c', static_cast<const char*>(nullptr)), ": c, 100 %, ");
    EXPECT_EQ(text(9), "unchanged");
    EXPECT_EQ(body(9), "unchanged");
    EXPECT_EQ(text(1UL << 32), "unchanged") << "the number is not cut";

    const std::string large(1 << 20, '%');
    EXPECT_EQ(body(4, large.c_str(), large.c_str()), large + ": " + large + ", 100 %, " + large);
}

TEST(StringTest, FindsAndCutsWithinItsEnds) {
    const NvString text("One: two: ONE");
    EXPECT_EQ(text.find(":", 0, false), 3);
    EXPECT_EQ(text.find(":", 4, false), 8);
    EXPECT_EQ(text.find(":", -5, false), 3);
    EXPECT_EQ(text.find("one", 0, false), -1);
    EXPECT_EQ(text.find("one", 1, true), 10);
    EXPECT_EQ(text.find("one", 11, true), -1);
    EXPECT_EQ(text.find(":", 99, true), -1);
    const auto part = [&text](int from, int count) {
        NvString result("left over");
        text.substring(from, count, &result);
        return std::string(result);
    };
    EXPECT_EQ(part(5, 3), "two");
    EXPECT_EQ(part(10, 99), "ONE");
    EXPECT_EQ(part(-4, 3), "One");
    EXPECT_EQ(part(99, 1) + part(0, -1), "");
}

TEST_F(TextTest, MayHaveAHelpPage) {
    std::string help = "unchanged";
    EXPECT_EQ(getMessageHelp(&help, "TVT", 9), -1);
    EXPECT_EQ(help, "unchanged");
    EXPECT_EQ(getMessageHelp(&help, "TVT", 5), 0);
    EXPECT_EQ(help, "<p>So.");
    EXPECT_EQ(getMessageHelp(&help, "TVT", 1), 0);
    EXPECT_EQ(help, "");
}

TEST_F(TextTest, IsTracedOnALineOfItsOwn) {
    const auto trace = [](const std::string& path) {
        setenv("TARVEX_LOG_NVM_MESSAGES", path.c_str(), 1);
    };
    trace(file("trace"));
    text(1);
    text(1);
    text(9);
    body(1);
    testing::internal::CaptureStderr();
    EXPECT_EQ(showMessageBox("TVT", 7, MB_YESNO, 0), IDYES);
    EXPECT_EQ(showMessageBox("TVT", 9, 0, 0), -1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("    QUESTION(TVT-7):  Is it?\n"),
              std::string::npos);
    EXPECT_EQ(content(file("trace")),
              "ERROR(TVT-1):  No.\nERROR(TVT-1):  No.\nQUESTION(TVT-7):  Is it?\n");

    std::filesystem::create_symlink("gone/trace", file("link"));
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    for (const std::string& place : {file("none/trace"), m_folder, std::string("/dev/full"),
                                     file("link"), file("pipe"), std::string()}) {
        trace(place);
        EXPECT_EQ(text(1), "ERROR(TVT-1):  No.") << place;
    }
    unsetenv("TARVEX_LOG_NVM_MESSAGES");
    text(1);
    EXPECT_EQ(content(file("trace")).size(), 63U) << "nothing more";
}

TEST_F(TextTest, GoesToTheSessionLogWhereItIsAskedFor) {
    static std::string logged;
    const auto log = [](const char* line) { logged += std::string(line) + "\n"; };
    const auto show = [] {
        testing::internal::CaptureStderr();
        EXPECT_EQ(showMessageBox("TVT", 1, 0, 0), IDOK);
        testing::internal::GetCapturedStderr();
    };
    setenv("TARVEX_DUMP_MSGBOX_MESSAGES_IN_SESSION_LOG", "", 1);
    show();
    setSessionLogCallback(log);
    show();
    text(1);
    EXPECT_EQ(logged, "ERROR(TVT-1):  No.\n");
    unsetenv("TARVEX_DUMP_MSGBOX_MESSAGES_IN_SESSION_LOG");
    show();
    EXPECT_EQ(logged, "ERROR(TVT-1):  No.\n");
}

TEST_F(TextTest, OfAResultCodeOfTheFileOperations) {
    const auto textOf = [](int code) {
        char buffer[1000] = "";
        EXPECT_EQ(getErrorText(code, buffer, sizeof buffer), 0);
        return std::string(buffer);
    };
    const struct {
        int code;
        unsigned long number;
    } cases[] = {{2, 1801}, {3, 1802}, {4, 1803}, {7, 1803},  {5, 1804},  {6, 1805},
                 {8, 1807}, {9, 1808}, {0, 1820}, {11, 1820}, {-1, 1820}, {INT32_MIN, 1820}};
    for (const auto& each : cases) {
        std::string wanted;
        ASSERT_EQ(getMessageText(&wanted, "TVCOMMN", each.number), 0) << each.number;
        EXPECT_EQ(textOf(each.code), wanted) << each.code;
    }
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(textOf(1), "Access was denied.");
    EXPECT_EQ(textOf(10), "Access was denied.");
    SetLastError(31'337);
    EXPECT_EQ(textOf(1), "The system failed with error 31337.");

    EXPECT_EQ(getErrorText(2, nullptr, 100), -1);
    const std::string whole = textOf(3);
    for (unsigned size : {0U, 1U, 2U, 80U, static_cast<unsigned>(whole.size())}) {
        const auto buffer = std::make_unique<char[]>(size);  // Of no byte more.
        EXPECT_EQ(getErrorText(3, buffer.get(), size), 0);
        if (size > 0) {
            EXPECT_EQ(std::string(buffer.get()), whole.substr(0, size - 1));
        }
    }
}

TEST_F(TextTest, MayNameAMessage) {
    const struct {
        const char* text;
        std::string module;
        int number;
    } cases[] = {
        {"ERROR(TVCOMMN-1821):  it failed", "TVCOMMN", 1821},
        {"(TVCOMMN-abc)", "TVCOMMN", 0},
        {"(-)", "", 0},
        {"(a(b-5)-6)", "a(b", 5},
        {"(TVT- 7x)", "TVT", 7},
        {"(TVT--5)", "TVT", -5},
    };
    for (const auto& each : cases) {
        std::string module;
        int number = 99;
        EXPECT_EQ(parseMessageKey(each.text, &module, &number), 0) << each.text;
        EXPECT_EQ(module, each.module) << each.text;
        EXPECT_EQ(number, each.number) << each.text;
    }
    for (const char* none : {"x-y (TVCOMMN-1821)", "(TVCOMMN)", ")TVCOMMN-1821(", "(TVT-7",
                             "TVT-7)", "(TVT)-7", "", static_cast<const char*>(nullptr)}) {
        std::string module = "unchanged";
        int number = 99;
        EXPECT_EQ(parseMessageKey(none, &module, &number), 1);
        EXPECT_EQ(module + std::to_string(number), "unchanged99");
    }
}

/// With a viewer of pages that tells which it was given.
class HelpTest : public TextTest {
protected:
    HelpTest() {
        write("xdg-open", "#!/bin/sh\nprintf '%s' \"$*\" >'" + file("opened") + "'\n");
        chmod(file("xdg-open").c_str(), 0700);
        EXPECT_EQ(mkfifo(file("opened").c_str(), 0600), 0);
        m_opened = Descriptor(open(file("opened").c_str(), O_RDWR | O_CLOEXEC));
        setenv("PATH", (m_folder + ":" + m_before).c_str(), 1);
    }
    ~HelpTest() override { setenv("PATH", m_before.c_str(), 1); }

    /// What the viewer was told to open; waits for it.
    std::string opened() {
        pollfd watched{m_opened, POLLIN, 0};
        char text[1000];
        const bool isThere = poll(&watched, 1, 10'000) == 1;
        const ssize_t length = isThere ? read(m_opened, text, sizeof text) : 0;
        return {text, static_cast<std::size_t>(std::max<ssize_t>(length, 0))};
    }

    const std::string m_before = getenv("PATH");
    Descriptor m_opened;
};

TEST_F(HelpTest, OpensANewPageEachTime) {
    EXPECT_EQ(showMessageHelp("TVT", 9), 1);
    EXPECT_EQ(showMessageHelp("TVT", 1), 1);
    EXPECT_EQ(showMessageHelpForText("(TVT-0)"), 1);
    EXPECT_EQ(showMessageHelpForText("no name of a message"), 1);
    EXPECT_EQ(showMessageHelp("TVT", 5), 0);
    const std::string first = opened();
    EXPECT_TRUE(first.starts_with(sandbox().temporaryFolder() + "/")) << first;
    EXPECT_TRUE(first.ends_with(".html")) << first;
    EXPECT_EQ(content(first), "<p>So.");
    EXPECT_EQ(showMessageHelpForText("INFO(TVT-5):  So it is."), 0);
    const std::string second = opened();
    EXPECT_NE(second, first);
    EXPECT_EQ(content(second), "<p>So.");

    setenv("TMPDIR", file("none").c_str(), 1);
    EXPECT_EQ(showMessageHelp("TVT", 5), 0) << "nobody is told that there is no room for the page";
    setenv("TMPDIR", sandbox().temporaryFolder().c_str(), 1);
}

}  // namespace
}  // namespace juntora::test
