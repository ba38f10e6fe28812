// Activity lines, as the hub lays them out.
#include <gtest/gtest.h>

#include "tools/toolkit/ActivityChanges.h"
#include "tools/toolkit/ActivityReader.h"

namespace juntora {
namespace {

TEST(ActivityLineTest, WhatTheHubWrites) {
    struct Case {
        const char* text;
        ActivityLine line;
    };
    const Case cases[] = {
        {" Draftel;0   (1a2b)           ", {"Draftel;0", 0x1a2b, "", "", false}},
        {" Draftel;0   (1a2b)         C:\\a.opj  (r)",
         {"Draftel;0", 0x1a2b, "C:\\a.opj", "r", false}},
        {" Draftel;0   (1a2b)        *a.opj  (r/w)", {"Draftel;0", 0x1a2b, "a.opj", "r/w", true}},
        {" Draftel;0   (0007)        *\"a b\"  (w)", {"Draftel;0", 7, "a b", "w", true}},
        {" Draftel;0   (1a2b)        *\"x  (r)\"  ", {"Draftel;0", 0x1a2b, "x  (r)", "", true}},
        {" Draftel;0   (1a2b)         *star  ", {"Draftel;0", 0x1a2b, "*star", "", false}},
        {" AVeryLongName;100 (7fffffff)           ",
         {"AVeryLongName;100", 0x7fffffff, "", "", false}},
        {" (odd);0     (1a2b)           ", {"(odd);0", 0x1a2b, "", "", false}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseActivityLine(c.text), c.line) << c.text;
    }
}

TEST(ActivityLineTest, WhatIsNone) {
    for (const char* text :
         {"", " ", "Draftel;0   (1a2b)           ", " Draftel;0   1a2b           ",
          " Draftel;0   (1a2b)", " Draftel;0   (xyz)           ", " Draftel;0   (1a2b)          ",
          " Draftel;0   (123456789)           ", " Draftel;0   (1a2b)        #           "}) {
        EXPECT_FALSE(parseActivityLine(text)) << text;
    }
}

class ActivityChangesTest : public testing::Test {
protected:
    using Lines = std::vector<ActivityLine>;

    /// "+" for came, "~" for changed, "-" for went and "=" for went as the tool's last, each with
    /// the line's name, file and access.
    static std::string changes(const Lines& before, const Lines& now) {
        std::string text;
        for (const ActivityChange& change : activityChanges(before, now)) {
            const char* signs = change.isLastOfTool ? "+~=" : "+~-";
            text += signs[static_cast<int>(change.kind)] + change.line.name + ":" +
                    change.line.file + change.line.access + " ";
        }
        return text;
    }

    const ActivityLine bare{"A", 1, "", "", false};
    const ActivityLine read{"A", 1, "f", "r", false};
    const ActivityLine both{"A", 1, "f", "r/w", true};
    const ActivityLine second{"A", 1, "g", "w", false};
    const ActivityLine other{"B", 2, "", "", false};
};

TEST_F(ActivityChangesTest, ComingAndGoing) {
    EXPECT_EQ(changes({}, {bare, other}), "+A: +B: ");
    EXPECT_EQ(changes({bare, other}, {bare, other}), "");
    EXPECT_EQ(changes({bare, other}, {other}), "=A: ");
    EXPECT_EQ(changes({read, second, other}, {other}), "=A:fr =A:gw ");
    EXPECT_EQ(changes({other}, {bare}), "=B: +A: ");
}

TEST_F(ActivityChangesTest, Files) {
    EXPECT_EQ(changes({bare}, {read}), "~A:fr ") << "the first file goes into the tool's own row";
    EXPECT_EQ(changes({read}, {both}), "~A:fr/w ");
    EXPECT_EQ(changes({read}, {read, second}), "+A:gw ");
    EXPECT_EQ(changes({read, second}, {second}), "-A:fr ");
    EXPECT_EQ(changes({read, second}, {both, bare}), "~A:fr/w ~A: ");
    EXPECT_EQ(changes({read, read}, {read}), "-A:fr ") << "the same line may stand twice";
}

}  // namespace
}  // namespace juntora
