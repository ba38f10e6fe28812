// The list container, against its own order of operations, and the comparisons of texts.
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "common/AppList.h"
#include "common/CaseBlind.h"
#include "common/PathName.h"

namespace juntora {
namespace {

class AppListTest : public ::testing::Test {
protected:
    // What stands in the list by a walk forwards, after a walk backwards has found the same.
    std::string content() {
        std::string forwards;
        AppList::Cursor cursor = m_list.atHead();
        for (void* value = AppList::at(&cursor); value; value = AppList::next(&cursor)) {
            forwards += *static_cast<char*>(value);
        }
        EXPECT_EQ(cursor, m_list.atTail());
        std::string backwards;
        for (void* value = AppList::at(&cursor); value; value = AppList::previous(&cursor)) {
            backwards.insert(0, 1, *static_cast<char*>(value));
        }
        EXPECT_EQ(cursor, m_list.atHead());
        EXPECT_EQ(forwards, backwards);
        EXPECT_EQ(m_list.count(), static_cast<int>(forwards.size()));
        return forwards;
    }

    void fill(const char* letters) {
        for (; *letters; ++letters) {
            m_list.pushBack(value(*letters));
        }
    }
    void* value(char letter) { return &m_letters[letter - 'a']; }
    AppList::Cursor on(char letter) {
        AppList::Cursor cursor = nullptr;
        EXPECT_EQ(m_list.find(value(letter), &cursor), 1);
        return cursor;
    }

    AppList m_list;
    char m_letters[27] = "abcdefghijklmnopqrstuvwxyz";
};

TEST_F(AppListTest, EmptyListHasNothingUnderAnyCursor) {
    EXPECT_EQ(m_list.newCursor(), nullptr);
    fill("ab");
    AppList::Cursor cursor = on('b');
    m_list.removeAt(&cursor);
    EXPECT_EQ(cursor, nullptr);
    cursor = on('a');
    m_list.removeAt(&cursor);
    cursor = m_list.atHead();
    for (AppList::Cursor* at : {static_cast<AppList::Cursor*>(nullptr), &cursor}) {
        EXPECT_EQ(AppList::at(at), nullptr);
        EXPECT_EQ(AppList::next(at), nullptr);
        EXPECT_EQ(AppList::previous(at), nullptr);
        m_list.removeAt(at);
        m_list.moveToFront(at);
    }
    m_list.clear();
    EXPECT_EQ(content(), "");
    EXPECT_EQ(m_list.indexOf(value('a')), -1);
    EXPECT_EQ(m_list.find(value('a'), &cursor), 0);
    fill("xy");
    EXPECT_EQ(content(), "xy");
}

TEST_F(AppListTest, AddsAtBothEndsAndBehindACursor) {
    AppList::Cursor cursor = nullptr;
    m_list.insertAfter(value('c'), &cursor);
    EXPECT_EQ(AppList::at(&cursor), value('c'));
    m_list.pushFront(value('a'));
    m_list.pushBack(value('e'));
    m_list.insertAfter(value('d'), &cursor);
    EXPECT_EQ(AppList::at(&cursor), value('d'));
    cursor = m_list.atHead();
    m_list.insertAfter(value('b'), &cursor);
    m_list.insertAfter(value('f'), nullptr);
    EXPECT_EQ(content(), "abcdef");

    EXPECT_EQ(m_list.addUnique(value('d'), &cursor), 0);
    EXPECT_EQ(AppList::at(&cursor), value('b'));
    cursor = nullptr;
    EXPECT_EQ(m_list.addUnique(value('g'), &cursor), 1);
    EXPECT_EQ(content(), "abcdefg");
    EXPECT_EQ(m_list.indexOf(value('g')), 6);
}

TEST_F(AppListTest, OrdersAndFindsByContent) {
    fill("cadb");
    AppList::Cursor cursor = on('d');
    m_list.moveToFront(&cursor);
    EXPECT_EQ(content(), "dcab");
    cursor = on('b');
    m_list.moveToFront(&cursor);
    EXPECT_EQ(content(), "bdca");
    m_list.sort([](const void* left, const void* right) {
        return **static_cast<char* const*>(left) - **static_cast<char* const*>(right);
    });
    EXPECT_EQ(content(), "abcd");
    // Seen from one byte before, each value's second byte is its letter.
    EXPECT_EQ(m_list.findBytes("d", 1, 1, &cursor), 1);
    EXPECT_EQ(AppList::at(&cursor), value('c'));
    EXPECT_EQ(m_list.findBytes("bd", 1, 2, &cursor), 0);
    EXPECT_EQ(AppList::at(&cursor), value('c'));
}

TEST(CaseBlindTest, FoldsNothingButLetters) {
    EXPECT_TRUE(equalCaseBlind("Voltara;10", "vOLTARA;10"));
    EXPECT_FALSE(equalCaseBlind("Voltara", "VoltaraAD"));
    EXPECT_FALSE(equalCaseBlind("[", "{"));
    EXPECT_FALSE(equalCaseBlind("\xC4", "\xE4"));
    for (int first = 0; first < 256; ++first) {
        const std::string one(1, static_cast<char>(first));
        for (int second = 0; second < 256; ++second) {
            const std::string other(1, static_cast<char>(second));
            if (equalCaseBlind(one, other)) {
                EXPECT_EQ(CaseBlindHash()(one), CaseBlindHash()(other));
            }
        }
    }
    EXPECT_EQ(PathName("/home/me/A.opj"), PathName("/HOME/me/a.OPJ"));
    EXPECT_FALSE(PathName("/a") == PathName());
}

}  // namespace
}  // namespace juntora
