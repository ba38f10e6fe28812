// Names in a series, and their order.
#include <cstring>
#include <string>

#include <climits>
#include <gtest/gtest.h>

#include "setup/nameOrder.h"
#include "setup/nameSteps.h"
#include "tests/setup/ExactBuffer.h"

namespace juntora::test {
namespace {

using Step = int (*)(char* name, int size);

/// Steps in a buffer of exactly that size. "refused" for a result of 1, after which the buffer must
/// be as before.
std::string stepped(Step step, const std::string& name, std::size_t size) {
    ExactBuffer buffer(size, name);
    const std::string before = buffer.text();
    const int result = step(buffer.data(), buffer.size());
    EXPECT_TRUE(result == 0 || (result == 1 && buffer.text() == before)) << name << ' ' << size;
    EXPECT_TRUE(result != 0 || buffer.isEnded()) << name << ' ' << size;
    return result == 0 ? buffer.text() : "refused";
}

struct Case {
    const char* before;
    const char* after;
};

template <std::size_t COUNT>
void expectSteps(Step step, const Case (&cases)[COUNT]) {
    for (const auto& [before, after] : cases) {
        const std::size_t length = std::strlen(before);
        const std::size_t room = std::max(length, std::strlen(after)) + 1;
        EXPECT_EQ(stepped(step, before, room), after) << before;
        // Too small by one for the new name, and then for the old one.
        for (std::size_t size = 0; size < room; ++size) {
            EXPECT_EQ(stepped(step, before, size), "refused") << before << ' ' << size;
        }
    }
}

TEST(NameStepsTest, NumbersGoUp) {
    expectSteps(IncrementNumber, {{"", "1"},
                                  {"a", "a1"},
                                  {"az", "az1"},
                                  {"a9", "a10"},
                                  {"a007", "a8"},
                                  {"a000", "a1"},
                                  {"0999", "1000"},
                                  {"x[9]", "x[10]"},
                                  {"x[009]", "x[10]"},
                                  {"[0]", "[1]"},
                                  {"x[1][2]", "x[1][3]"},
                                  {"x[3]y", "x[3]y1"},
                                  {"a18446744073709551615", "a18446744073709551616"},
                                  {"x[99999999999999999999]", "x[100000000000000000000]"}});
    for (const char* name : {"x[y]", "x[]", "x]", "]", "x9]", "x[-1]", "x[ 1]", "x[1]]", "x[1a]"}) {
        EXPECT_EQ(stepped(IncrementNumber, name, 20), "refused") << name;
        EXPECT_EQ(stepped(IncrementName, name, 20), "refused") << name;
        EXPECT_EQ(stepped(DecrementNumber, name, 20), "refused") << name;
        EXPECT_EQ(stepped(DecrementName, name, 20), "refused") << name;
    }
}

TEST(NameStepsTest, NumbersGoDown) {
    for (const Step step : {DecrementNumber, DecrementName}) {
        expectSteps(step, {{"a10", "a9"},
                           {"a2", "a1"},
                           {"a1", "a"},
                           {"a0", "a"},
                           {"a001", "a"},
                           {"a010", "a9"},
                           {"1", ""},
                           {"x[10]", "x[9]"},
                           {"x[1]", "x[0]"},
                           {"x[007]", "x[6]"},
                           {"a100000000000000000000", "a99999999999999999999"}});
        for (const char* name : {"x[0]", "x[00]", "", "a-", "-"}) {
            EXPECT_EQ(stepped(step, name, 20), "refused") << name;
        }
    }
    EXPECT_EQ(stepped(DecrementNumber, "ab", 20), "refused");
}

TEST(NameStepsTest, LettersGoUp) {
    expectSteps(IncrementName, {{"ab", "ac"},
                                {"Y", "Z"},
                                {"az", "aaa"},
                                {"AZ", "AAA"},
                                {"aZ", "aAA"},
                                {"z", "aa"},
                                {"x[3]y", "x[3]z"},
                                {"a9", "a10"},
                                {"x[9]", "x[10]"}});
    for (const char* name : {"", "a-", "a ", "a@", "a[", "a`", "a{", "a\xe4"}) {
        EXPECT_EQ(stepped(IncrementName, name, 20), "refused") << name;
    }
}

TEST(NameStepsTest, LettersGoDown) {
    expectSteps(DecrementName, {{"ac", "ab"},
                                {"aB", "aA"},
                                {"xaa", "xz"},
                                {"xAa", "xz"},
                                {"Aa", "z"},
                                {"aA", "Z"},
                                {"xAA", "xZ"},
                                {"xba", "xaz"},
                                {"xBa", "xAz"},
                                {"xbA", "xaZ"},
                                {"1a", "1a"},
                                {"]A", "]A"},
                                {"a", "a"},
                                {"A", "A"}});
}

void expectOrder(const std::string& left, const std::string& right, int sign) {
    const auto signOf = [](int value) { return (value > 0) - (value < 0); };
    EXPECT_EQ(signOf(CompareNames(left.c_str(), right.c_str())), sign) << left << ' ' << right;
    EXPECT_EQ(signOf(CompareNames(right.c_str(), left.c_str())), -sign) << left << ' ' << right;
}

TEST(NameOrderTest, IsThatOfNumbersAndLetters) {
    const char* const ascending[] = {"",    "-",    "1",  "a",  "a1", "a9",
                                     "a10", "a10b", "ab", "az", "a$", "b"};
    for (const auto& left : ascending) {
        for (const auto& right : ascending) {
            expectOrder(left, right, (&left > &right) - (&left < &right));
        }
    }
    for (const char* same : {"a007b2", "A7b02", "a7B2"}) {
        expectOrder(same, "a7b2", 0);
    }
    expectOrder("a$", "a{", 0);
    expectOrder("a0", "a", 1);
    expectOrder("a00", "a0", 0);
    // Bytes of no letter come behind all of ASCII, in this order as in the other.
    expectOrder("a\xe4", "az", 1);
    EXPECT_EQ(CompareNames("a9", "a12"), -3);
    EXPECT_EQ(CompareNames("ac", "aA"), 2);
}

TEST(NameOrderTest, NumbersMayBeOfAnyLength) {
    const std::string huge(5000, '9');
    EXPECT_EQ(CompareNames(("a" + huge).c_str(), "a0"), INT_MAX);
    EXPECT_EQ(CompareNames("a0", ("a" + huge).c_str()), -INT_MAX);
    EXPECT_EQ(CompareNames("2147483648", "1"), INT_MAX);
    EXPECT_EQ(CompareNames("18446744073709551617", "18446744073709551615"), 2);
    expectOrder(huge + "1", huge + "2", -1);
    expectOrder("000" + huge + "b", huge + "a", 1);
}

}  // namespace
}  // namespace juntora::test
