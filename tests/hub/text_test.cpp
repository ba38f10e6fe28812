// Texts that arrive in records and texts that go out: scanning, replies in place, activity lines.
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "hub/ActivityLine.h"
#include "hub/RecordText.h"
#include "ipc/TextScan.h"

namespace juntora {
namespace {

TEST(TextScanTest, NumbersBeyondTheirWidthAreNone) {
    std::int32_t number = 7;
    EXPECT_TRUE(TextScan("-2147483648").decimal(&number));
    EXPECT_EQ(number, INT32_MIN);
    for (const char* text : {"2147483648", "-2147483649", "99999999999999999999", "", "-", "x"}) {
        EXPECT_FALSE(TextScan(text).decimal(&number)) << text;
    }
    EXPECT_EQ(scanWindow("ffffffff"), 0xFFFFFFFFU);
    EXPECT_EQ(scanWindow("000000000000001a2B)"), 0x1A2BU);
    for (const char* text : {"100000000", "ffffffffffffffffffffff", "", "g", " - 1", "--1", "0x"}) {
        EXPECT_EQ(scanWindow(text), 0U) << text;
    }
}

// What the platform's own scanner makes of the same texts, up to the width of a window.
TEST(TextScanTest, ReadsWindowsAndNumbersAsScanfDoes) {
    constexpr char ALPHABET[] = " \t\n0012789aFxX+-g;";
    std::mt19937 random(7);
    int found = 0;
    for (int round = 0; round < 200'000; ++round) {
        std::string text(random() % 9, ' ');
        for (char& c : text) {
            c = ALPHABET[random() % (sizeof ALPHABET - 1)];
        }
        unsigned window = 0;
        if (std::sscanf(text.c_str(), "%x", &window) != 1) {
            window = 0;
        }
        ASSERT_EQ(scanWindow(text), window) << '"' << text << '"';
        int expected = 0;
        std::int32_t number = 0;
        const bool isNumber = std::sscanf(text.c_str(), "%d", &expected) == 1;
        ASSERT_EQ(TextScan(text).decimal(&number), isNumber) << '"' << text << '"';
        ASSERT_EQ(number, expected) << '"' << text << '"';
        found += isNumber;
    }
    EXPECT_GT(found, 1000);
}

// A field without a NUL, and what lies behind it.
struct Slot {
    IpcMessage record;
    char behind[64];

    explicit Slot(char filling) { std::memset(static_cast<void*>(this), filling, sizeof *this); }
};

TEST(RecordTextTest, RepliesStayInsideTheSendersRoomAndTheField) {
    struct Case {
        int capacity;
        std::size_t reply;
        int expected;
    };
    for (const Case& each :
         {Case{60, 5, 6}, Case{6, 5, 6}, Case{5, 5, 5}, Case{1, 5, 1}, Case{60, 0, 1},
          Case{1004, 2000, 1004}, Case{INT32_MAX, 2000, 1004}, Case{INT32_MAX, 5, 6}, Case{0, 5, 0},
          Case{-1, 5, -1}, Case{INT32_MIN, 5, INT32_MIN}}) {
        Slot slot('x');
        slot.record.replyLength = each.capacity;
        const std::string reply(each.reply, 'r');
        writeReply(&slot.record, reply);
        EXPECT_EQ(slot.record.replyLength, each.expected);
        const auto written = static_cast<std::size_t>(std::max(each.expected, 0));
        const std::string text(slot.record.text, sizeof slot.record.text + sizeof slot.behind);
        EXPECT_EQ(text.substr(0, written), (reply + '\0').substr(0, written));
        EXPECT_EQ(text.find_first_not_of('x', written), std::string::npos) << each.capacity;
    }
}

TEST(ActivityLineTest, LaysItsColumnsOut) {
    EXPECT_EQ(activityLine("Draftel;0", 0x1A2B, "", 0, 0), " Draftel;0   (1a2b)           ");
    EXPECT_EQ(activityLine("A;0", 0xF, "b.opj", 1, 0), " A;0         (000f)         b.opj  (r)");
    EXPECT_EQ(activityLine("Sketchel;100", 0x12345678, "my board", 3, 5),
              " Sketchel;100 (12345678)        *\"my board\"  (r/w)");
    EXPECT_EQ(activityLine("%s%n;0", 1, "%s", 2, 2), " %s%n;0      (0001)         %s  (w)");
    EXPECT_EQ(activityLine("A;0", 1, "x", 4, 0), " A;0         (0001)         x  ");
}

TEST(ActivityLineTest, CutsDisplayNames) {
    EXPECT_EQ(displayName(PathName()), "");
    const std::string longPath = "C:\\" + std::string(500, 'p');
    EXPECT_EQ(displayName(PathName(longPath.c_str())), longPath.substr(0, 259));
    char small[7] = "zzzzzz";
    fileDisplayName(PathName("C:\\%s%s"), small, sizeof small);
    EXPECT_STREQ(small, "C:\\%s%");
}

}  // namespace
}  // namespace juntora
