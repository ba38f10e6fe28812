// Watches, departures and the lines of the activity list.
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "tests/hub/HubFixture.h"

namespace juntora {
namespace {

using Texts = std::vector<std::string>;

class HubDeparture : public test::HubTest {
protected:
    static std::string notice(int orderly, HWND window, const char* name) {
        return "17 0 " + std::to_string(orderly) + ',' + hex(window) + ',' + name;
    }
    int watch(HWND watcher, const std::string& text) { return send(watcher, IPC_WATCH, text, 2); }
    void leave(HWND tool) { EXPECT_EQ(send(tool, IPC_SIGN_OFF, "", 2), 1); }
};

TEST_F(HubDeparture, WatchersHearOfTheRowThatTheyNamed) {
    const HWND first = attach("Draftel");
    const HWND second = attach("Draftel");
    const HWND watcher = attach("Sketchel");
    const HWND other = attach("Sketchel");
    EXPECT_EQ(watch(watcher, "adraftel;0"), 1);
    EXPECT_EQ(watch(watcher, "aDraftel"), 1);  // The newest: the second.
    EXPECT_EQ(watch(other, 'x' + hex(second)), 1);
    EXPECT_EQ(watch(watcher, 'x' + hex(second)), 1);
    for (const char* text :
         {"", "a", "x", "x0", "xzz", "aNobody", "aSketchel;7", "Draftel", "X1"}) {
        EXPECT_EQ(watch(watcher, text), 0) << text;
    }
    EXPECT_EQ(watch(0, "aDraftel"), 1);

    leave(second);
    EXPECT_EQ(arrivals(watcher), (Texts(2, notice(1, second, "Draftel;1"))));
    EXPECT_EQ(arrivals(other), (Texts{notice(1, second, "Draftel;1")}));
    leave(second);
    EXPECT_EQ(m_table.count(), 3);

    AppEntry* row = m_table.findNewest(first, nullptr, false);
    m_pHub->notifyWatchers(row, 0);
    m_pHub->notifyWatchers(row, 0);
    EXPECT_EQ(arrivals(watcher), (Texts{notice(0, first, "Draftel;0")}));

    EXPECT_EQ(watch(watcher, "aDraftel"), 1);
    leave(watcher);
    leave(first);
    EXPECT_EQ(arrivals(watcher), Texts());
    EXPECT_TRUE(allSlotsFree());
}

TEST_F(HubDeparture, AllRowsOfAWindowGoWithTheirLinesAndNobodyElses) {
    const HWND stays = attach("Draftel");
    const HWND goes = attach("Draftel");
    const Texts before = lines();
    for (const char* file : {"/b", "/a a", "/c"}) {
        AppEntry* row =
            m_table.pushFront(std::make_unique<AppEntry>("Draftel;1", 1, goes, 0U, -1, 3U, file));
        m_pHub->addActivityLine(row->name.c_str(), goes, &row->file, row->access, 1);
        row->addWatcher(stays);
    }
    EXPECT_EQ(lines().size(), 5U);
    leave(0);
    EXPECT_EQ(lines().size(), 5U);
    leave(goes);
    EXPECT_EQ(arrivals(stays), (Texts(3, notice(1, goes, "Draftel;1"))));
    EXPECT_EQ(m_table.count(), 1);
    ASSERT_EQ(lines().size(), 1U);
    EXPECT_NE(std::find(before.begin(), before.end(), lines()[0]), before.end());
    leave(stays);
    EXPECT_EQ(lines(), Texts());
}

TEST_F(HubDeparture, LinesAreFoundByWindowAndFile) {
    struct Line {
        HWND window;
        const char* file;
        std::uint32_t access;
        std::uint32_t flags;
    };
    const Line all[] = {{16, "", 0, 0},      {16, "/a.opj", 1, 0}, {16, "/A.OPJ", 2, 1},
                        {16, "/my a", 3, 1}, {17, "/a.opj", 1, 0}, {16, "*:/star", 0, 0}};
    for (const Line& line : all) {
        const PathName file(line.file);
        m_pHub->addActivityLine("a\"(1)", line.window, &file, line.access, line.flags);
    }
    // Returns the line that goes.
    const auto remove = [&](HWND window, const char* text) {
        const PathName file(text != nullptr ? text : "");
        const Texts before = lines();
        const int result = m_pHub->removeActivityLine(window, text != nullptr ? &file : nullptr);
        const Texts after = lines();
        EXPECT_EQ(before.size() - after.size(), result == 0 ? 1U : 0U);
        const auto [gone, rest] =
            std::mismatch(before.begin(), before.end(), after.begin(), after.end());
        return gone == before.end() ? std::string() : *gone;
    };
    EXPECT_EQ(remove(18, "/a.opj"), "");
    EXPECT_EQ(remove(17, "/my a"), "");
    EXPECT_EQ(remove(16, "star"), "");
    EXPECT_NE(remove(16, "/a.OPJ"), "");
    EXPECT_NE(remove(16, "/a.OPJ"), "");
    EXPECT_EQ(remove(16, "/a.OPJ"), "");
    EXPECT_EQ(remove(16, "/MY A"), " a\"(1)       (0010)        *\"C:\\my a\"  (r/w)");
    EXPECT_EQ(remove(16, ""), " a\"(1)       (0010)           ");
    EXPECT_EQ(remove(16, ""), "");
    EXPECT_EQ(remove(16, "*:/star"), " a\"(1)       (0010)         *:\\star  ");
    EXPECT_EQ(remove(16, nullptr), "");
    EXPECT_EQ(remove(17, nullptr), " a\"(1)       (0011)         C:\\a.opj  (r)");
    EXPECT_EQ(lines(), Texts());
}

// Lines that the box takes for equal, and lines that someone else has put there or taken away.
TEST_F(HubDeparture, TellsEqualLinesApart) {
    for (const char* text : {"/a", "/z", "/A", "/a", "/m"}) {
        const PathName file(text);
        m_pHub->addActivityLine("T;0", 16, &file, 1, 0);
    }
    SendMessageA(m_listBox.m_hWnd, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>("somebody else's"));
    for (std::size_t left = 5; left > 0; --left) {
        const Texts before = lines();
        ASSERT_EQ(before.size(), left + 1);
        const auto last = std::find_if(before.rbegin(), before.rend(), [](const std::string& line) {
            return line.find("(0010)") != std::string::npos;
        });
        Texts expected = before;
        expected.erase(expected.end() - 1 - (last - before.rbegin()));
        EXPECT_EQ(m_pHub->removeActivityLine(16, nullptr), 0);
        EXPECT_EQ(lines(), expected);
    }
    EXPECT_EQ(m_pHub->removeActivityLine(16, nullptr), 1);
    m_pHub->addActivityLine("T;0", 16, nullptr, 0, 0);
    SendMessageA(m_listBox.m_hWnd, LB_RESETCONTENT, 0, 0);
    EXPECT_EQ(m_pHub->removeActivityLine(16, nullptr), 1);
    m_pHub->addActivityLine("T;0", 16, nullptr, 0, 0);
    EXPECT_EQ(m_pHub->removeActivityLine(16, nullptr), 0);
}

}  // namespace
}  // namespace juntora
