// Who holds which file: what is granted and refused, and that table and lines follow.
#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hub/ActivityLine.h"
#include "tests/hub/HubFixture.h"

namespace juntora {
namespace {

using Texts = std::vector<std::string>;

class HubFiles : public test::HubTest {
protected:
    int ask(HWND sender, int opcode, const std::string& file, int number) {
        return send(sender, opcode, '"' + file + "\" " + std::to_string(number), 2);
    }
    int open(HWND sender, const std::string& file, int access) {
        return ask(sender, IPC_FILE_OPEN, file, access);
    }
    int close(HWND sender, const std::string& file, int access) {
        return ask(sender, IPC_FILE_CLOSE, file, access);
    }
    /// What follows the window in the one line of a tool.
    std::string fileOf(HWND tool) const {
        char window[16];
        std::snprintf(window, sizeof window, "(%04x)        ", tool);
        for (const std::string& line : lines()) {
            if (const std::size_t at = line.find(window); at != std::string::npos) {
                return line.substr(at + std::string(window).size());
            }
        }
        return "no line";
    }
};

TEST_F(HubFiles, AreGrantedByWhatIsHeldAlready) {
    // Held, asked, and whether the second tool gets it.
    struct Case {
        int held;
        int asked;
        bool isGranted;
    };
    const Case cases[] = {{1, 1, true},  {1, 2, true},  {1, 3, false}, {2, 1, true}, {2, 2, false},
                          {2, 3, false}, {3, 1, false}, {3, 2, false}, {3, 3, false}};
    for (const Case& each : cases) {
        const HWND first = attach("Draftel");
        const HWND second = attach("Sketchel");
        EXPECT_EQ(open(first, "C:\\x\\a.opj", each.held), 0);
        const int holder = static_cast<int>(first);
        const int query = ask(second, IPC_FILE_QUERY, "/X/./A.OPJ", each.asked);
        EXPECT_EQ(query, (each.held & each.asked) != 0 ? holder : 0);
        EXPECT_EQ(open(second, "/x//b/../A.opj", each.asked), each.isGranted ? 0 : holder)
            << each.held << each.asked;
        EXPECT_EQ(fileOf(second).find("A.opj") != std::string::npos, each.isGranted);
        EXPECT_EQ(send(first, IPC_SIGN_OFF, ""), 1);
        EXPECT_EQ(ask(second, IPC_FILE_QUERY, "/x/a.opj", 3),
                  each.isGranted ? static_cast<int>(second) : 0);
        EXPECT_EQ(send(second, IPC_SIGN_OFF, ""), 1);
        EXPECT_EQ(lines(), Texts());
    }
}

TEST_F(HubFiles, AToolsOwnFilesAndTheirLines) {
    const HWND tool = attach("Draftel");
    EXPECT_EQ(open(tool, "/x/my a", 2), 0);
    EXPECT_EQ(fileOf(tool), " \"C:\\x\\my a\"  (w)");
    EXPECT_EQ(open(tool, "/x/my a", 2), static_cast<int>(tool)) << "its own row counts";
    EXPECT_EQ(open(tool, "/x/MY A", 1), 0);
    EXPECT_EQ(fileOf(tool), " \"C:\\x\\my a\"  (r/w)");
    EXPECT_EQ(m_table.count(), 1);
    EXPECT_EQ(ask(tool, IPC_FILE_SET_FLAGS, "/x/my a", 0x11), static_cast<int>(tool));
    EXPECT_EQ(fileOf(tool), "*\"C:\\x\\my a\"  (r/w)");
    EXPECT_EQ(ask(tool, IPC_FILE_CLEAR_FLAGS, "/x/my a", 1), static_cast<int>(tool));
    EXPECT_EQ(fileOf(tool), " \"C:\\x\\my a\"  (r/w)");
    EXPECT_EQ(ask(tool, IPC_FILE_SET_FLAGS, "/x/other", 1), 0);

    EXPECT_EQ(open(tool, "/x/b", 1), 0);
    EXPECT_EQ(m_table.count(), 2);
    const AppEntry* clone = m_table.findNewest(tool, nullptr, false);
    EXPECT_EQ(clone->name, "Draftel;0");
    EXPECT_EQ(clone->primary, 0U);
    EXPECT_EQ(close(tool, "/x/my a", 2), 1);
    const PathName file("/x/my a");
    EXPECT_EQ(m_table.findFileHolder(file, 1)->flags, 0U) << "a close takes the flags";
    EXPECT_EQ(close(tool, "/x/my a", 3), 1) << "more than it holds";
    EXPECT_EQ(m_table.count(), 1);
    EXPECT_EQ(close(tool, "/x/b", 1), 1);
    EXPECT_EQ(fileOf(tool), "   ");
    EXPECT_EQ(close(tool, "/x/b", 1), 1);
    EXPECT_EQ(lines().size(), 1U);
}

TEST_F(HubFiles, FlagsAreFound) {
    const HWND first = attach("Draftel");
    const HWND second = attach("Sketchel");
    open(first, "/x/a", 1);
    open(second, "/x/a", 1);
    ask(first, IPC_FILE_SET_FLAGS, "/x/a", 3);
    const auto find = [&](const std::string& flags, HWND window) {
        char text[64];
        std::snprintf(text, sizeof text, "\"/X/A\" %s %x", flags.c_str(), window);
        const int result = send(second, IPC_FILE_FIND_FLAGS, text, 1000);
        EXPECT_EQ(m_record.replyLength, 1000);
        return result;
    };
    char found[64];
    std::snprintf(found, sizeof found, "\"/X/A\" 3 %x", first);
    for (const char* flags : {"4095", "3", "0x3", "03", "0xfff", "07777"}) {
        EXPECT_EQ(find(flags, 0), static_cast<int>(first)) << flags;
        EXPECT_STREQ(m_record.text, found);
    }
    for (const char* flags : {"1", "2", "65535"}) {
        EXPECT_EQ(find(flags, 0), 0) << flags;
        EXPECT_STREQ(m_record.text, "\"/X/A\" 0 0");
    }
    EXPECT_EQ(find("4095", second), 0);
    EXPECT_EQ(find("0", 0), 0);
    ask(second, IPC_FILE_SET_FLAGS, "/x/a", 0xFFFF);
    EXPECT_EQ(find("0", 0), static_cast<int>(second)) << "0 stands for all sixteen";
    EXPECT_EQ(send(second, IPC_FILE_FIND_FLAGS, "/x/a 4095", 1000), static_cast<int>(second));
}

TEST_F(HubFiles, WhatCannotBeReadIsRefused) {
    const HWND tool = attach("Draftel");
    open(tool, "/x/held", 2);
    const Texts before = lines();
    for (const char* text :
         {"", "\"", "\"\"", "\"\" 1", "\"/x/a\"", "\"/x/a", "\"/x/a\" x", "/x/a", "/x/a b 1", "1",
          "\"/x/a\" 0", "\"/x/a\" 4", "\"/x/a\" -1", "\"/x/a\" 4294967297", "\"/x/a\" 0x"}) {
        EXPECT_EQ(send(tool, IPC_FILE_OPEN, text, 2), -1) << text;
        EXPECT_EQ(send(tool, IPC_FILE_QUERY, text, 2), -1) << text;
        EXPECT_EQ(send(tool, IPC_FILE_CLOSE, text, 2), 1) << text;
    }
    for (const char* text : {"", "\"/x/held\"", "/x/held", "\"/x/held\" 99999999999"}) {
        EXPECT_EQ(send(tool, IPC_FILE_SET_FLAGS, text, 2), 0) << text;
        EXPECT_EQ(send(tool, IPC_FILE_CLEAR_FLAGS, text, 2), 0) << text;
        EXPECT_EQ(send(tool, IPC_FILE_FIND_FLAGS, text, 1000), 0) << text;
    }
    // A tool without a row, and the ids that are nobody's.
    for (const HWND stranger : {makeTool(), HWND{0}, IPC_NO_IDENTITY}) {
        EXPECT_EQ(open(stranger, "/x/a", 1), -1);
        EXPECT_EQ(ask(stranger, IPC_FILE_QUERY, "/x/held", 2), static_cast<int>(tool));
        EXPECT_EQ(close(stranger, "/x/held", 2), 1);
        EXPECT_EQ(ask(stranger, IPC_FILE_SET_FLAGS, "/x/held", 1), 0);
    }
    EXPECT_EQ(lines(), before);
    EXPECT_EQ(m_table.count(), 1);
}

// The same table in its plainest form: a list of rows, the newest first, and a walk for everything.
struct Walk {
    struct Row {
        HWND window;
        std::string file;
        int access = 0;
        int flags = 0;
    };
    std::vector<Row> rows;

    Row* find(HWND window, const std::string& file, int mask) {
        for (Row& row : rows) {
            if ((window == 0 || row.window == window) && row.file == file &&
                (mask == 0 || (row.access & mask) != 0)) {
                return &row;
            }
        }
        return nullptr;
    }
    int open(HWND window, const std::string& file, int access) {
        if (const Row* held = find(0, file, access); held && (held->access != 1 || access != 1)) {
            return static_cast<int>(held->window);
        }
        for (Row& row : rows) {
            if (row.window == window && (row.file.empty() || row.file == file)) {
                row.access = row.file.empty() ? access : row.access | access;
                row.file = file;
                return 0;
            }
        }
        rows.insert(rows.begin(), {window, file, access});
        return 0;
    }
    void close(HWND window, const std::string& file, int access) {
        Row* row = find(0, file, access);
        if (!row || row->window != window) {
            return;
        }
        row->flags = 0;
        row->access &= ~access;
        if (row->access != 0) {
            return;
        }
        row->file.clear();
        if (std::count_if(rows.begin(), rows.end(),
                          [&](const Row& each) { return each.window == window; }) > 1) {
            rows.erase(rows.begin() + (row - rows.data()));
        }
    }
    int change(HWND window, const std::string& file, int bits, bool mustSet) {
        Row* row = find(window, file, 0);
        if (!row) {
            return 0;
        }
        row->flags = mustSet ? row->flags | bits : row->flags & ~bits;
        return static_cast<int>(window);
    }
};

TEST_F(HubFiles, AreWhatAWalkThroughTheRowsWouldMakeThem) {
    std::mt19937 random(20);
    Walk walk;
    std::map<HWND, std::string> names;
    for (const char* name : {"Draftel", "Draftel", "Sketchel"}) {
        const HWND tool = attach(name);
        names[tool] = m_table.findNewest(tool, nullptr, false)->name;
        walk.rows.insert(walk.rows.begin(), {tool, ""});
    }
    const char* const files[] = {"C:\\X\\A", "C:\\X\\B", "C:\\X\\C d", "C:\\X\\E"};
    for (int round = 0; round < 20'000; ++round) {
        const HWND tool = std::next(names.begin(), static_cast<long>(random() % 3))->first;
        const std::string file = files[random() % std::size(files)];
        const int number = static_cast<int>(random() % 3) + 1;
        switch (random() % 6) {
            case 0:
            case 1:
                ASSERT_EQ(open(tool, file, number), walk.open(tool, file, number)) << round;
                break;
            case 2:
            case 3:
                ASSERT_EQ(close(tool, file, number), 1);
                walk.close(tool, file, number);
                break;
            case 4:
                ASSERT_EQ(ask(tool, IPC_FILE_SET_FLAGS, file, number),
                          walk.change(tool, file, number, true));
                break;
            default:
                ASSERT_EQ(ask(tool, IPC_FILE_CLEAR_FLAGS, file, number),
                          walk.change(tool, file, number, false));
        }
        if (round % 50 == 0) {
            Texts expected;
            for (const Walk::Row& row : walk.rows) {
                expected.push_back(activityLine(names[row.window], row.window, row.file,
                                                static_cast<std::uint32_t>(row.access),
                                                static_cast<std::uint32_t>(row.flags)));
            }
            Texts shown = lines();
            std::sort(expected.begin(), expected.end());
            std::sort(shown.begin(), shown.end());
            ASSERT_EQ(shown, expected) << round;
            ASSERT_EQ(m_table.count(), static_cast<int>(walk.rows.size()));
        }
    }
}

}  // namespace
}  // namespace juntora
