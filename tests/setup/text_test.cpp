// Pieces of texts, small calculations, and where and when the program runs.
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "setup/numbers.h"
#include "setup/runningProgram.h"
#include "setup/textFields.h"
#include "tests/setup/ExactBuffer.h"

namespace juntora::test {
namespace {

using Texts = std::vector<std::string>;

Texts tokensOf(const char* list, char delimiter, std::size_t size) {
    Texts tokens;
    while (list) {
        ExactBuffer output(size);
        EXPECT_EQ(NextToken(list, &list, delimiter, output.data(), output.size()), output.data());
        EXPECT_EQ(output.isEnded(), size > 0);
        tokens.push_back(output.text());
    }
    return tokens;
}

TEST(TextFieldsTest, TokensGoUpToTheDelimiter) {
    EXPECT_EQ(tokensOf("a; b c\t;;\t d", ';', 10), (Texts{"a", "b c", "", "d"}));
    EXPECT_EQ(tokensOf("a;", ';', 10), (Texts{"a", ""}));
    EXPECT_EQ(tokensOf("a; \t", ';', 10), (Texts{"a", ""}));
    EXPECT_EQ(tokensOf("", ';', 10), Texts{""});
    EXPECT_EQ(tokensOf("one  two", ' ', 10), (Texts{"one", "two"}));
    // What is cut doesn't come with the next one, and blanks go behind the cut.
    EXPECT_EQ(tokensOf("abcd;ef", ';', 3), (Texts{"ab", "ef"}));
    EXPECT_EQ(tokensOf("a bcd;ef", ';', 3), (Texts{"a", "ef"}));
    EXPECT_EQ(tokensOf("ab;c", ';', 1), (Texts{"", ""}));
    EXPECT_EQ(tokensOf("ab;c", ';', 0), (Texts{"", ""}));
    const char* next = "left over";
    EXPECT_EQ(NextToken(nullptr, &next, ';', nullptr, 0), nullptr);
    EXPECT_EQ(next, nullptr);
}

TEST(TextFieldsTest, ListsHaveTokens) {
    EXPECT_TRUE(ListHasToken("net", "pin, NET ,part", ','));
    EXPECT_TRUE(ListHasToken("part", "pin,part", ','));
    EXPECT_FALSE(ListHasToken("par", "pin,part", ','));
    EXPECT_FALSE(ListHasToken("pin,part", "pin,part", ','));
    EXPECT_TRUE(ListHasToken(std::string(2000, 'N').c_str(), std::string(2000, 'n').c_str(), ','));
    EXPECT_TRUE(ListHasToken("", "a,,b", ','));
    EXPECT_FALSE(ListHasToken("", "a, ", ','));
    EXPECT_FALSE(ListHasToken("a", nullptr, ','));
    EXPECT_FALSE(ListHasToken(nullptr, "a", ','));
}

TEST(TextFieldsTest, FieldsAndBlanks) {
    const char* text = ";,ab,;c;";
    Texts fields;
    ExactBuffer output(std::strlen(text) + 1);
    while ((text = NextField(text, ",;", output.data())) != nullptr) {
        fields.push_back(output.text());
    }
    EXPECT_EQ(fields, (Texts{"ab", "c"}));
    EXPECT_EQ(output.text(), "");

    for (const auto& [before, after] : {std::pair{" a\t b \t", "ab"}, {"", ""}, {"\t ", ""}}) {
        ExactBuffer blanks(std::strlen(before) + 1, before);
        EXPECT_EQ(RemoveBlanks(blanks.data()), std::string(after));
    }
}

/// The length without a root: from above in steps of 2, then up in steps of 1, at half units.
int lengthBySteps(int x, int y) {
    const long long t = 4LL * (x * x + y * y);
    const int larger = std::max(std::abs(x), std::abs(y));
    long long r = 2LL * larger + std::min(std::abs(x), std::abs(y));
    while (r * r > t) {
        r -= 2;
    }
    while (r * r < t) {
        ++r;
    }
    return static_cast<int>(r / 2);
}

TEST(NumbersTest, LengthsAreThoseOfTheSteps) {
    EXPECT_EQ(IntegerLength(3, 4), 5);
    EXPECT_EQ(IntegerLength(1, 1), 1);
    for (int x = -130; x <= 130; ++x) {
        for (int y = -130; y <= 130; ++y) {
            ASSERT_EQ(IntegerLength(x, y), lengthBySteps(x, y)) << x << ' ' << y;
        }
    }
    for (int x = 0; x < 16'384; x += 113) {
        ASSERT_EQ(IntegerLength(x, -16'000), lengthBySteps(x, -16'000)) << x;
    }
    constexpr int MOST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    EXPECT_EQ(IntegerLength(300'000'000, -400'000'000), 500'000'000);
    EXPECT_EQ(IntegerLength(MOST, 0), MOST);
    EXPECT_EQ(IntegerLength(LEAST, LEAST), MOST);
}

TEST(NumbersTest, DifferencesAndDecimals) {
    EXPECT_EQ(DifferenceBeyond(1.0, 1.5, 0.5), -0.5);
    EXPECT_EQ(DifferenceBeyond(1.5, 1.0, 0.5), 0.5);
    EXPECT_EQ(DifferenceBeyond(1.0, 1.25, 0.5), 0);
    EXPECT_EQ(DifferenceBeyond(1.0, 1.0, 0), 0);
    EXPECT_TRUE(std::isnan(DifferenceBeyond(NAN, 1.0, 0.5)));
    for (const auto& [text, count] :
         {std::pair{"1.250", 3}, {"1.", 0}, {"125", 0}, {".5e3.123", 1}, {"", 0}, {"1..2", 0}}) {
        EXPECT_EQ(CountDecimals(text), count) << text;
    }
    EXPECT_EQ(CountDecimals(nullptr), 0);
}

TEST(RunningProgramTest, TellsWhereAndWhen) {
    const std::string own = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    EXPECT_EQ(ProgramDirectory(), PathName(own.c_str()));
    std::tm parts{};
    const std::time_t before = std::time(nullptr);
    const std::string text = TimeText();
    EXPECT_EQ(text.size(), 25U);
    ASSERT_NE(strptime(text.c_str(), "%a %b %e %H:%M:%S %Y\n", &parts), nullptr) << text;
    parts.tm_isdst = -1;
    const std::time_t told = std::mktime(&parts);
    EXPECT_TRUE(told >= before && told <= std::time(nullptr)) << text;
}

}  // namespace
}  // namespace juntora::test
