// Tokens of a text, the cursors on them, and the operations on strings.
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/StringOperations.h"
#include "common/TextTokens.h"
#include "common/TokenCursor.h"

namespace juntora {
namespace {

using Texts = std::vector<std::string>;

std::string text(const CString& string) { return static_cast<const char*>(string); }

// The tokens by number, after a walk with a cursor has found the same.
Texts content(TextTokens& tokens) {
    Texts byNumber;
    Texts byWalk;
    CString token("left over");
    for (int i = 0; tokens.get(i, token) == 1; ++i) {
        byNumber.push_back(text(token));
    }
    EXPECT_EQ(text(token), "");
    EXPECT_EQ(tokens.count(), static_cast<int>(byNumber.size()));

    TokenCursor cursor(tokens);
    EXPECT_FALSE(cursor.current(token));
    while (cursor.next(token)) {
        byWalk.push_back(text(token));
        EXPECT_TRUE(cursor.current(token));
        EXPECT_EQ(text(token), byWalk.back());
    }
    EXPECT_EQ(text(token), "");
    EXPECT_EQ(byWalk, byNumber);
    return byNumber;
}

struct Cut {
    const char* text;
    const char* delimiters;
    int skipEmpty;
    const char* quotes;
    Texts tokens;
};

void PrintTo(const Cut& cut, std::ostream* out) {
    *out << '"' << (cut.text ? cut.text : "(null)") << "\", empty ones "
         << (cut.skipEmpty ? "skipped" : "kept");
}

class TextTokensCutTest : public ::testing::TestWithParam<Cut> {};

TEST_P(TextTokensCutTest, Cuts) {
    const Cut& cut = GetParam();
    TextTokens tokens(cut.text, cut.delimiters, cut.skipEmpty, cut.quotes);
    EXPECT_EQ(content(tokens), cut.tokens);
    CString token("left over");
    EXPECT_EQ(tokens.get(-1, token), 0);
    EXPECT_EQ(text(token), "");
}

INSTANTIATE_TEST_SUITE_P(
    Skipped, TextTokensCutTest,
    ::testing::Values(Cut{"one", " \t", 1, "\"", {"one"}},
                      Cut{" \tone \t two ", " \t", 1, "\"", {"one", "two"}},
                      Cut{"\"/my parts/a b.lib\" 2", " \t", 1, "\"", {"/my parts/a b.lib", "2"}},
                      Cut{"a\"b c\"d e", " \t", 1, "\"", {"ab cd", "e"}},
                      Cut{"a \"b c d", " \t", 1, "\"", {"a", "b c d"}},
                      Cut{"\"\" a\"\"", " ", 1, "\"", {"", "a"}}, Cut{" \t \t", " \t", 1, "\"", {}},
                      Cut{"one two\nthree four\n", "\n", 1, "\"", {"one two", "three four"}},
                      Cut{"'a;\"b;'c\";d", ";", 1, "'\"", {"a;b", "c", "d"}},
                      Cut{"a b", ";", 1, nullptr, {"a b"}}));

INSTANTIATE_TEST_SUITE_P(Kept, TextTokensCutTest,
                         ::testing::Values(Cut{",", ",", 0, "", {"", ""}},
                                           Cut{"a,b,", ",", 0, "", {"a", "b", ""}},
                                           Cut{",a,,b", ",", 0, "", {"", "a", "", "b"}},
                                           Cut{"\",\",", ",", 0, "\"", {",", ""}},
                                           // In both sets, a character is a quote mark.
                                           Cut{"a,\"b,c\"", ",\"", 0, "\"", {"a", "b,c"}},
                                           Cut{"\xff\x80\xff", "\xff", 0, "\x80", {"", "\xff"}}));

INSTANTIATE_TEST_SUITE_P(Nothing, TextTokensCutTest,
                         ::testing::Values(Cut{"", ",", 0, "", {}}, Cut{nullptr, ",", 0, "", {}},
                                           Cut{"a", "", 0, "", {}}, Cut{"a", nullptr, 0, "", {}}));

TEST(TextTokensTest, HoldsMoreTokensThanAFewAndLongOnes) {
    std::string joined;
    Texts expected;
    for (int i = 0; i < 1000; ++i) {
        expected.push_back("token " + std::to_string(i) + std::string(i % 50, '.'));
        joined += expected.back() + '\n';
    }
    TextTokens tokens(joined.c_str(), "\n", 1, "");
    EXPECT_EQ(content(tokens), expected);
}

TEST(TextTokensTest, ResetStartsAnew) {
    TextTokens tokens("a,\"b,c\",,d", ",", 0, "\"");
    EXPECT_EQ(content(tokens), (Texts{"a", "b,c", "", "d"}));
    tokens.reset("x;\"y;z\";;", ";", 1, "");
    EXPECT_EQ(content(tokens), (Texts{"x", "\"y", "z\""}));
    tokens.reset(nullptr, ";", 0, "");
    EXPECT_EQ(content(tokens), Texts{});
    tokens.reset(" e f", " ", 0, "");
    EXPECT_EQ(content(tokens), (Texts{"", "e", "f"}));
}

class TokenCursorTest : public ::testing::Test {
protected:
    // Reads by each of the ways; all must fail and empty the text.
    static void expectNothing(TokenCursor& cursor) {
        for (int way = 0; way < 5; ++way) {
            CString token("left over");
            EXPECT_FALSE(readBy(way, cursor, token)) << "way " << way;
            EXPECT_TRUE(token.IsEmpty()) << "way " << way;
        }
    }
    static bool readBy(int way, TokenCursor& cursor, CString& token) {
        switch (way) {
            case 0:
                return cursor.first(token);
            case 1:
                return cursor.last(token);
            case 2:
                return cursor.next(token);
            case 3:
                return cursor.current(token);
            default:
                return cursor.at(0, token);
        }
    }

    TextTokens m_tokens{"a b c", " ", 1, ""};
    CString m_token;
};

TEST_F(TokenCursorTest, StaysWhereNothingWasRead) {
    TokenCursor cursor(m_tokens);
    EXPECT_TRUE(cursor.last(m_token));
    EXPECT_EQ(text(m_token), "c");
    EXPECT_FALSE(cursor.next(m_token));
    EXPECT_TRUE(cursor.current(m_token));
    EXPECT_EQ(text(m_token), "c");
    EXPECT_TRUE(cursor.at(1, m_token));
    EXPECT_EQ(text(m_token), "b");
    EXPECT_FALSE(cursor.at(3, m_token));
    EXPECT_FALSE(cursor.at(-1, m_token));
    EXPECT_TRUE(m_token.IsEmpty());
    EXPECT_TRUE(cursor.next(m_token));
    EXPECT_EQ(text(m_token), "c");
    EXPECT_TRUE(cursor.first(m_token));
    EXPECT_EQ(text(m_token), "a");
}

TEST_F(TokenCursorTest, ReadsNothingAfterAResetUntilANewOneIsAssigned) {
    TokenCursor cursor(m_tokens);
    EXPECT_TRUE(cursor.last(m_token));
    m_tokens.reset("d e", " ", 1, "");
    expectNothing(cursor);
    TokenCursor copy(cursor);
    expectNothing(copy);
    cursor = TokenCursor(m_tokens);
    EXPECT_TRUE(cursor.next(m_token));
    EXPECT_EQ(text(m_token), "d");
}

TEST_F(TokenCursorTest, OutlivesItsTokens) {
    auto tokens = std::make_unique<TextTokens>("x y", " ", 1, "");
    TokenCursor first(*tokens);
    TokenCursor copy(first);
    { const TokenCursor gone(*tokens); }
    EXPECT_TRUE(copy.last(m_token));
    tokens.reset();
    expectNothing(first);
    expectNothing(copy);
    first = copy;
    expectNothing(first);
    TokenCursor never;
    expectNothing(never);
}

TEST_F(TokenCursorTest, AssignmentMovesBetweenTokens) {
    auto other = std::make_unique<TextTokens>("x y", " ", 1, "");
    TokenCursor moved(*other);
    TokenCursor left(m_tokens);
    EXPECT_TRUE(moved.at(1, m_token));
    left = moved;
    EXPECT_TRUE(left.current(m_token));
    EXPECT_EQ(text(m_token), "y");

    TokenCursor here(m_tokens);
    EXPECT_TRUE(here.at(1, m_token));
    moved = here;
    // One that has moved away is none of those that lose their tokens; one that has come is.
    other.reset();
    expectNothing(left);
    EXPECT_TRUE(moved.current(m_token));
    EXPECT_EQ(text(m_token), "b");
    EXPECT_TRUE(moved.next(m_token));
    EXPECT_TRUE(here.current(m_token));
    EXPECT_EQ(text(m_token), "b");
    m_tokens.reset("d", " ", 1, "");
    expectNothing(moved);
}

TEST(StringOperationsTest, FindsFromAPosition) {
    const CString string("a;b,c");
    EXPECT_EQ(findOneOfFrom(string, 0, ",;"), 1);
    EXPECT_EQ(findOneOfFrom(string, 1, ",;"), 1);
    EXPECT_EQ(findOneOfFrom(string, 2, ",;"), 3);
    for (const int from : {4, 5, 6, -1}) {
        EXPECT_EQ(findOneOfFrom(string, from, ",;"), -1) << from;
    }
    EXPECT_EQ(findOneOfFrom(string, 0, ""), -1);
    EXPECT_EQ(findOneOfFrom(CString(), 0, "a"), -1);
    EXPECT_EQ(findOneOfFrom("a\xe4", 0, "\xe4"), 1);
}

TEST(StringOperationsTest, DeletesWhatIsThere) {
    constexpr int MOST = 0x7fffffff;
    const struct {
        const char* before;
        int count, at, result;
        const char* after;
    } cases[] = {
        {"", 1, 0, 0, ""},           {"", 0, 7, 0, ""},           {"abcd", 1, 0, 0, "bcd"},
        {"abcd", 2, 1, 0, "ad"},     {"abcd", 2, 2, 0, "ab"},     {"abcd", 4, 0, 0, ""},
        {"abcd", 0, 1, -1, "abcd"},  {"abcd", 2, 3, -1, "abcd"},  {"abcd", 1, 4, -1, "abcd"},
        {"abcd", -1, 2, -1, "abcd"}, {"abcd", 1, -1, -1, "abcd"}, {"abcd", MOST, MOST, -1, "abcd"}};
    for (const auto& given : cases) {
        CString string(given.before);
        EXPECT_EQ(deleteChars(string, given.count, given.at), given.result);
        EXPECT_EQ(text(string), given.after) << given.before << ' ' << given.count << given.at;
    }
}

TEST(StringOperationsTest, ReplacesAndRemoves) {
    CString string("/a/b\xff/");
    replaceChar(string, '/', '\\');
    EXPECT_EQ(text(string), "\\a\\b\xff\\");
    removeChars(string, "\xff\\");
    EXPECT_EQ(text(string), "ab");
    removeChars(string, "");
    EXPECT_EQ(text(string), "ab");
    EXPECT_EQ(string.GetLength(), 2);
}

TEST(StringOperationsTest, WhiteSpaceGoesOrCollapses) {
    const struct {
        const char *before, *removed, *collapsed;
    } cases[] = {{"", "", ""},
                 {" \t\n\v\f\r", "", ""},
                 {"one", "one", "one"},
                 {"\t one \r\n two\v", "onetwo", "one two"},
                 {"a\xa0 b",
                  "a\xa0"
                  "b",
                  "a\xa0 b"}};
    for (const auto& given : cases) {
        CString removed(given.before);
        removeWhitespace(removed);
        EXPECT_EQ(text(removed), given.removed);
        CString collapsed(given.before);
        collapseWhitespace(collapsed);
        EXPECT_EQ(text(collapsed), given.collapsed);
    }
}

}  // namespace
}  // namespace juntora
