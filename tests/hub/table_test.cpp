// The application table: the index beside the list finds what a walk through the list would, and
// leaves the cursor there.
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hub/AppTable.h"
#include "hub/ToolTable.h"

namespace juntora {
namespace {

class AppTableTest : public ::testing::Test {
protected:
    // As a sign-on does.
    AppEntry* attach(const char* baseName, HWND window) {
        const int instance = m_table.nextInstance(baseName);
        return m_table.pushFront(std::make_unique<AppEntry>(uniqueName(baseName, instance),
                                                            instance, window, 1U, -1, 0U, nullptr));
    }
    // A further file of a client.
    AppEntry* clone(const AppEntry& row, const char* file) {
        return m_table.pushFront(std::make_unique<AppEntry>(row.name, row.instance, row.window, 0U,
                                                            row.toolIndex, 1U, file));
    }

    AppTable m_table;
};

TEST_F(AppTableTest, WhatIsNotThereIsNotFound) {
    EXPECT_EQ(m_table.newCursor(), nullptr);
    EXPECT_EQ(m_table.findRow(nullptr, 0, nullptr, false), nullptr);
    attach("A", 1)->addWatcher(1);  // Lost with its table: the sanitizer's to find.
    EXPECT_EQ(m_table.findNewest(0, "", false), nullptr);
    EXPECT_EQ(findTool("Kalbi"), 17);
    EXPECT_EQ(findTool("kalbi"), -1);
}

// The same search in its plainest form: from the cursor on, row by row.
struct Walk {
    std::vector<const AppEntry*> rows;  // The newest last.

    static std::string folded(std::string text) {
        for (char& c : text) {
            c = static_cast<char>(c >= 'A' && c <= 'Z' ? c + 32 : c);
        }
        return text;
    }
    static bool matches(const AppEntry& row, HWND window, const char* name, bool exact) {
        const std::string full = folded(row.name);
        const std::string compared = exact ? full : full.substr(0, full.rfind(';'));
        return (!window || row.window == window) && (!name || compared == folded(name));
    }
    const AppEntry* find(std::size_t from, HWND window, const char* name, bool exact) const {
        for (std::size_t left = from + 1; left > 0; --left) {
            if (matches(*rows[left - 1], window, name, exact)) {
                return rows[left - 1];
            }
        }
        return nullptr;
    }
    int nextInstance(const char* baseName) const {
        int next = 0;
        for (const AppEntry* row : rows) {
            if (matches(*row, 0, baseName, false)) {
                next = std::max(next, row->instance + 1);
            }
        }
        return next;
    }
};

TEST_F(AppTableTest, IndexFindsWhatAWalkFinds) {
    constexpr const char* NAMES[] = {"a", "A", "ab", "a;1", "A;0", "b"};
    std::mt19937 random(20240611);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    // A few that many rows share, and so many others that the index grows and has gaps.
    const auto anyWindow = [&] {
        return static_cast<HWND>(1 + (below(2) ? below(12) : below(200)));
    };
    const auto anyName = [&]() -> std::string {
        return below(2) ? NAMES[below(std::size(NAMES))] : "n" + std::to_string(below(100));
    };
    Walk walk;
    for (int step = 0; step < 20'000; ++step) {
        const std::string anyOf = anyName();
        const char* name = anyOf.c_str();
        ASSERT_EQ(m_table.nextInstance(name), walk.nextInstance(name));
        if (walk.rows.size() < 5 + below(150)) {
            walk.rows.push_back(below(4) || walk.rows.empty()
                                    ? attach(name, anyWindow())
                                    : clone(*walk.rows[below(walk.rows.size())], "/f"));
        } else {
            const std::size_t place = below(walk.rows.size());
            AppList::Cursor cursor = m_table.atHead();
            for (std::size_t left = walk.rows.size() - 1; left > place; --left) {
                m_table.next(&cursor);
            }
            m_table.removeRow(&cursor);
            walk.rows.erase(walk.rows.begin() + static_cast<std::ptrdiff_t>(place));
            ASSERT_EQ(m_table.at(&cursor), place > 0 ? walk.rows[place - 1] : nullptr);
        }
        ASSERT_EQ(m_table.count(), static_cast<int>(walk.rows.size()));

        const HWND window = below(2) ? anyWindow() : 0;
        const std::string unique = uniqueName(name, static_cast<int>(below(4)));
        const bool exact = below(2);
        const char* wanted = below(4) == 0 ? nullptr : below(2) ? unique.c_str() : name;
        std::size_t from = walk.rows.size() - 1;
        AppList::Cursor cursor = m_table.atHead();
        for (std::size_t steps = below(2) ? below(walk.rows.size()) : 0; steps > 0; --steps) {
            m_table.next(&cursor);
            --from;
        }
        const AppEntry* expected = walk.find(from, window, wanted, exact);
        ASSERT_EQ(m_table.findRow(&cursor, window, wanted, exact), expected);
        ASSERT_EQ(m_table.at(&cursor), expected ? expected : walk.rows.front());
    }
}

}  // namespace
}  // namespace juntora
