// How the hub reads its command line.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "shell/LineWords.h"

namespace juntora {
namespace {

using Words = std::vector<std::string>;

Words wordsOf(std::string_view line) {
    Words all;
    LineWords words(line);
    while (words.next()) {
        all.emplace_back(words.word());
    }
    return all;
}

TEST(LineWords, AreBareWordsSwitchesAndQuotedTexts) {
    EXPECT_EQ(wordsOf(""), Words{});
    EXPECT_EQ(wordsOf("   "), Words{});
    EXPECT_EQ(wordsOf("-V /V -x"), (Words{"-V", "/V", "-x"}));
    EXPECT_EQ(wordsOf("my board.opj  -V"), (Words{"my board.opj", "-V"}));
    EXPECT_EQ(wordsOf("a-b c/d"), Words{"a-b c/d"});
    EXPECT_EQ(wordsOf("\"a -b\" c "), (Words{"a -b", "c"}));
    EXPECT_EQ(wordsOf("-Vrest - -1"), (Words{"-V", "rest", "-", "-1"}));
    EXPECT_EQ(wordsOf("\"\" \"open"), (Words{"", "open"}));
    EXPECT_EQ(wordsOf("\""), Words{""});
}

TEST(LineWords, ReadTheRestOfAWordThatIsTooLongAsTheNext) {
    const std::string longest(259, 'x');
    EXPECT_EQ(wordsOf(longest), Words{longest});
    EXPECT_EQ(wordsOf(longest + "yy -V"), (Words{longest, "yy", "-V"}));
    EXPECT_EQ(wordsOf('"' + longest + '"'), Words{longest});
    EXPECT_EQ(wordsOf('"' + longest + "yy\""), (Words{longest, "yy\""}));
}

}  // namespace
}  // namespace juntora
