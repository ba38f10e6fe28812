// Patterns, by hand and against the recursion that tells what they mean.
#include "setup/wildcards.h"

#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/setup/ExactBuffer.h"
#include "tests/setup/WildcardReference.h"

namespace juntora::test {
namespace {

/// All texts of up to `length` characters of the alphabet.
std::vector<std::string> textsOf(std::string_view alphabet, std::size_t length) {
    std::vector<std::string> texts{""};
    for (std::size_t at = 0; at < texts.size() && texts[at].size() < length; ++at) {
        for (const char c : alphabet) {
            texts.push_back(texts[at] + c);
        }
    }
    return texts;
}

TEST(WildcardMatchTest, MatchesWholeTexts) {
    const struct {
        const char *pattern, *text;
        int result;
    } cases[] = {
        {"", "", 1},           {"", "a", 0},          {"a", "", 0},          {"*", "", 1},
        {"a*", "a", 1},        {"a**", "a", 0},       {"a**", "ab", 1},      {"**", "", 0},
        {"*?", "a", 1},        {"*?", "", 0},         {"A?c", "aBC", 1},     {"?", "ab", 0},
        {"*.OPJ", "b.opj", 1}, {"*.opj", "b.op", 0},  {"*a*b", "xaxbxb", 1}, {"a\\*", "a*", 1},
        {"a\\*", "ab", 0},     {"a\\*", "a", 0},      {"a\\?", "a?", 1},     {"\\A", "a", 1},
        {"\\\\", "\\", 1},     {"a\\", "a", 0},       {"a\\", "a\\", 0},     {"*\\**", "a*b", 1},
        {"\xc4", "\xe4", 0},   {"*\xe4", "b\xe4", 1},
    };
    for (const auto& [pattern, text, result] : cases) {
        EXPECT_EQ(WildcardMatch(pattern, text), result) << pattern << "  " << text;
    }
}

TEST(WildcardMatchTest, AnswersAsTheRecursionDoes) {
    const struct {
        std::vector<std::string> patterns, texts;
    } cases[] = {{textsOf("ab*?\\", 5), textsOf("aB*\\", 4)},
                 {textsOf("ab*", 6), textsOf("ab", 7)}};
    for (const auto& [patterns, texts] : cases) {
        for (const std::string& pattern : patterns) {
            for (const std::string& text : texts) {
                ASSERT_EQ(WildcardMatch(pattern.c_str(), text.c_str()) != 0,
                          matchesByRecursion(pattern.c_str(), text.c_str()))
                    << pattern << "  " << text;
            }
        }
    }
}

TEST(WildcardMatchTest, ManyStarsOnALongTextTakeNoTimeToSpeakOf) {
    const std::string text(10'000, 'a');
    EXPECT_EQ(WildcardMatch("*a*a*a*a*b", text.c_str()), 0);
    EXPECT_EQ(WildcardMatch("*a*a*a*a*b", (text + "B").c_str()), 1);
    std::string pattern;
    for (int i = 0; i < 1000; ++i) {
        pattern += "*a?";
    }
    EXPECT_EQ(WildcardMatch((pattern + "b").c_str(), text.c_str()), 0);
    ExactBuffer output(text.size() + 1);
    EXPECT_EQ(WildcardApply(text.c_str(), "*a*a*a*a*b", "*", output.data(), output.size()), 0);
    EXPECT_EQ(output.text(), text);
}

TEST(WildcardApplyTest, MakesNames) {
    const struct {
        const char *source, *sourcePattern, *targetPattern, *name;
        int result;
    } cases[] = {
        {"board.opj", "*", "new", "new", 0},
        {"board.opj", "*", "new*", "newboard.opj", 0},
        {"board.opj", "board*", "card*", "card.opj", 0},
        {"board.opj", "*.opj", "*", "board", 0},
        {"board.opj", "*.OPJ", "x-*", "x-board", 0},
        {"board.opj", "b?ard.*", "c*?", "coopj", 0},
        {"board.opj", "*.*", "*.*", "boardopj", 0},
        {"board.opj", "*.opj", "*.sch", "board", WILDCARD_NOT_APPLIED},
        {"board.opj", "*x", "*", "board.opj", 0},
        {"a*b", "a\\*?", "c*", "cb", 0},
        {"abc", "xbyc", "n*", "n", WILDCARD_NOT_APPLIED},
        {"abc", "", "*", "", WILDCARD_NOT_APPLIED},
        {"", "*", "n*", "n", WILDCARD_NOT_APPLIED},
        {"abc", "", "", "", 0},
    };
    for (const auto& [source, sourcePattern, targetPattern, name, result] : cases) {
        ExactBuffer output(20);
        EXPECT_EQ(WildcardApply(source, sourcePattern, targetPattern, output.data(), 20), result)
            << source << "  " << sourcePattern << "  " << targetPattern;
        EXPECT_EQ(output.text(), name) << source << "  " << sourcePattern << "  " << targetPattern;
    }
}

TEST(WildcardApplyTest, DoesAsTheRecursionDoesInBuffersOfAnySize) {
    const std::vector<std::string> sources = textsOf("aB*", 3);
    for (const std::string& pattern : textsOf("ab*?\\", 4)) {
        for (const std::string& source : sources) {
            for (const char* target : {"", "x", "*", "x?", "x*y", "**", "**z", "\\*"}) {
                for (std::size_t size = 0; size < 7; size += source.size() == 3 ? 1 : 3) {
                    ExactBuffer output(size);
                    const int result = WildcardApply(source.c_str(), pattern.c_str(), target,
                                                     output.data(), output.size());
                    const Applied expected =
                        size == 0
                            ? Applied{WILDCARD_NOT_APPLIED, ""}
                            : applyByRecursion(source.c_str(), pattern.c_str(), target, size - 1);
                    ASSERT_EQ(result, expected.result)
                        << source << "  " << pattern << "  " << target << "  " << size;
                    ASSERT_EQ(output.text(), expected.name)
                        << source << "  " << pattern << "  " << target << "  " << size;
                }
            }
        }
    }
}

TEST(WildcardsTest, AreFound) {
    EXPECT_TRUE(HasWildcards("a*"));
    EXPECT_TRUE(HasWildcards("\\?"));
    EXPECT_FALSE(HasWildcards("a.b"));
    EXPECT_FALSE(HasWildcards(""));
}

}  // namespace
}  // namespace juntora::test
