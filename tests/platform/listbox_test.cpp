// List boxes: what they hold, in which order, and what they answer.
#include <random>
#include <set>
#include <string>
#include <vector>

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/dialog/dialog.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {
namespace {

BOOL ignore(HWND, UINT, WPARAM, LPARAM) { return 0; }

LPARAM in(const char* text) { return reinterpret_cast<LPARAM>(text); }

class ListBoxTest : public TestDesktop {
protected:
    ListBoxTest() {
        const DialogControl control{1001, "ListBox", "", WS_VISIBLE | LBS_SORT, 0, 0, 10, 10};
        const DialogTemplate dialog{1, "", WS_POPUP, 0, 10, 10, "MS Sans Serif", 8, {&control, 1}};
        m_dialog = CreateDialogFromTemplate(dialog, 0, ignore, 0);
        m_list = GetDlgItem(m_dialog, 1001);
    }
    ~ListBoxTest() override { DestroyWindow(m_dialog); }

    LRESULT add(const std::string& line) const {
        return SendMessageA(m_list, LB_ADDSTRING, 0, in(line.c_str()));
    }
    LRESULT tell(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageA(m_list, message, wParam, lParam);
    }
    LRESULT find(int after, const char* line) const {
        return tell(LB_FINDSTRINGEXACT, static_cast<WPARAM>(after), in(line));
    }
    std::string line(std::size_t index) const {
        std::string text(static_cast<std::size_t>(tell(LB_GETTEXTLEN, index)), '\0');
        EXPECT_EQ(tell(LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data())),
                  static_cast<LRESULT>(text.size()));
        return text;
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (LRESULT index = 0; index < tell(LB_GETCOUNT); ++index) {
            all.push_back(line(static_cast<std::size_t>(index)));
        }
        return all;
    }

    HWND m_dialog = 0;
    HWND m_list = 0;
};

using Lines = std::vector<std::string>;

TEST_F(ListBoxTest, SortsWithoutRegardToCaseThenByBytes) {
    for (const char* text :
         {"beta", "Alpha", "alpha", "10", "9", "_x", "Beta2", "\xE4", "", "ALPHA"}) {
        EXPECT_GE(add(text), 0) << text;
    }
    EXPECT_EQ(lines(),
              (Lines{"", "_x", "10", "9", "ALPHA", "Alpha", "alpha", "beta", "Beta2", "\xE4"}));
    EXPECT_EQ(add("Bet"), 7) << "the result is where the line stands";
}

TEST_F(ListBoxTest, KeepsItsOrderThroughAnyComingAndGoing) {
    std::mt19937 random(7);
    std::multiset<std::string> model;
    for (int step = 0; step < 3000; ++step) {
        if (model.size() < 20 || random() % 3 != 0) {
            std::string text;
            for (unsigned length = random() % 4; length > 0; --length) {
                text += "ab1 "[random() % 4];
            }
            add(text);
            model.insert(text);
        } else {
            const std::size_t index = random() % model.size();
            ASSERT_EQ(tell(LB_DELETESTRING, index), static_cast<LRESULT>(model.size()) - 1);
            model.erase(std::next(model.begin(), static_cast<std::ptrdiff_t>(index)));
        }
        if (step % 500 == 499) {
            ASSERT_EQ(lines(), Lines(model.begin(), model.end()));
        }
    }
    for (const std::string& text : std::set<std::string>(model.begin(), model.end())) {
        EXPECT_EQ(find(-1, text.c_str()), std::distance(model.begin(), model.lower_bound(text)));
    }
}

TEST_F(ListBoxTest, FindsOneAfterTheOtherAndGoesOnAtTheTop) {
    for (const char* text : {"a", "B", "b", "c"}) {
        add(text);
    }
    EXPECT_EQ(find(-1, "b"), 1);
    EXPECT_EQ(find(1, "b"), 2);
    EXPECT_EQ(find(2, "B"), 1);
    EXPECT_EQ(find(3, "B"), 1);
    EXPECT_EQ(find(99, "B"), 1);
    EXPECT_EQ(find(-1, "bb"), LB_ERR);
    EXPECT_EQ(find(-1, ""), LB_ERR);
}

TEST_F(ListBoxTest, StillFindsWhatWasPutOutOfOrder) {
    add("b");
    add("c");
    EXPECT_EQ(tell(LB_INSERTSTRING, static_cast<WPARAM>(-1), in("a")), 2);
    EXPECT_EQ(tell(LB_INSERTSTRING, 0, in("z")), 0);
    EXPECT_EQ(lines(), (Lines{"z", "b", "c", "a"}));
    EXPECT_EQ(find(-1, "A"), 3);
    EXPECT_EQ(find(-1, "Z"), 0);
    tell(LB_RESETCONTENT);
    EXPECT_EQ(tell(LB_GETCOUNT), 0);
    add("b");
    add("a");
    EXPECT_EQ(lines(), (Lines{"a", "b"})) << "sorted anew";
}

TEST_F(ListBoxTest, AnswersWhatItDoesNotHaveWithAnError) {
    add("one");
    char buffer[16] = "untouched";
    for (const WPARAM index : {WPARAM{1}, ~WPARAM{0}, WPARAM{0x1'0000'0000}}) {
        EXPECT_EQ(tell(LB_GETTEXT, index, reinterpret_cast<LPARAM>(buffer)), LB_ERR);
        EXPECT_EQ(tell(LB_GETTEXTLEN, index), LB_ERR);
        EXPECT_EQ(tell(LB_DELETESTRING, index), LB_ERR);
        EXPECT_EQ(tell(LB_SETCURSEL, index), LB_ERR);
    }
    EXPECT_STREQ(buffer, "untouched");
    EXPECT_EQ(tell(LB_ADDSTRING), LB_ERR);
    EXPECT_EQ(tell(LB_GETTEXT), LB_ERR);
    EXPECT_EQ(tell(LB_FINDSTRINGEXACT), LB_ERR);
    EXPECT_EQ(tell(LB_INSERTSTRING, 5, in("x")), LB_ERR);
    EXPECT_EQ(tell(LB_GETCOUNT), 1);
    EXPECT_EQ(add(std::string(70'000, 'x')), 1);
    EXPECT_EQ(tell(LB_GETTEXTLEN, 1), 59'999) << "cut, for no reader has room for it";
}

TEST_F(ListBoxTest, KeepsTheSelectionOnItsLine) {
    add("b");
    add("d");
    EXPECT_EQ(tell(LB_GETCURSEL), LB_ERR);
    EXPECT_EQ(tell(LB_SETCURSEL, 1), 1);
    add("a");
    EXPECT_EQ(tell(LB_GETCURSEL), 2);
    add("e");
    EXPECT_EQ(tell(LB_GETCURSEL), 2);
    tell(LB_DELETESTRING, 0);
    EXPECT_EQ(tell(LB_GETCURSEL), 1);
    tell(LB_DELETESTRING, 1);
    EXPECT_EQ(tell(LB_GETCURSEL), LB_ERR);
}

TEST_F(ListBoxTest, TellsViewersOfEachChangeAndOfNothingElse) {
    const auto changesBy = [this](UINT message, WPARAM wParam, LPARAM lParam) {
        const DWORD before = GetWindowChangeCount(m_list);
        tell(message, wParam, lParam);
        return GetWindowChangeCount(m_list) - before;
    };
    EXPECT_GT(changesBy(LB_ADDSTRING, 0, in("a")), 0U);
    EXPECT_GT(changesBy(LB_DELETESTRING, 0, 0), 0U);
    EXPECT_EQ(changesBy(LB_GETCOUNT, 0, 0), 0U);
    EXPECT_EQ(changesBy(LB_FINDSTRINGEXACT, 0, in("a")), 0U);
}

}  // namespace
}  // namespace juntora::test
