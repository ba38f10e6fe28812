// Switches of the environment. They are kept for the life of a process, so that each case has names
// of its own, and the one of the table comes first.
#include "setup/switches.h"

#include <cstdlib>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace juntora::test {
namespace {

TEST(SwitchesTest, ThoseOfTheTableAreOnUnlessTheirOwnWordIsSet) {
    setenv("DISABLE_EXPRESS_CONNECT", "", 1);
    setenv("ENABLE_EXPRESS_CONNECT", "1", 1);
    setenv("DRAFTEL_CORRECT_PAGE_READ", "0", 1);
    setenv("DRAFTEL_OLD_PAGE_READ_", "1", 1);
    EXPECT_FALSE(isSwitchOn("ENABLE_EXPRESS_CONNECT"));
    EXPECT_TRUE(isSwitchOn("DRAFTEL_ENABLE_AUTO_TRANSACTIONS"));
    EXPECT_TRUE(isSwitchOn("DRAFTEL_CORRECT_PAGE_READ"));
    // The table was looked up at the first question, whichever that was.
    setenv("DRAFTEL_OLD_PAGE_READ", "1", 1);
    EXPECT_TRUE(isSwitchOn("DRAFTEL_CORRECT_PAGE_READ"));
}

TEST(SwitchesTest, AllOthersAreOnByTheirValue) {
    for (const auto& [value, isOn] : {std::pair{"true", true},
                                      {"TRUE", true},
                                      {"Yes", true},
                                      {"1", true},
                                      {"1x", true},
                                      {"10", true},
                                      {"on", false},
                                      {"0", false},
                                      {"", false},
                                      {"truth", false},
                                      {" yes", false},
                                      {"01", false}}) {
        const std::string name = std::string("SWITCH_TEST_") + value;
        setenv(name.c_str(), value, 1);
        EXPECT_EQ(isSwitchOn(name.c_str()), isOn) << value;
    }
    EXPECT_FALSE(isSwitchOn("SWITCH_TEST_UNSET"));
    setenv("SWITCH_TEST_A", "B=1", 1);
    EXPECT_FALSE(isSwitchOn("SWITCH_TEST_A=B"));
    EXPECT_FALSE(isSwitchOn(""));
    EXPECT_FALSE(isSwitchOn(nullptr));
}

TEST(SwitchesTest, AnAnswerStays) {
    setenv("SWITCH_TEST_STAYS", "1", 1);
    EXPECT_TRUE(isSwitchOn("SWITCH_TEST_STAYS"));
    EXPECT_FALSE(isSwitchOn("SWITCH_TEST_STAYS_OFF"));
    unsetenv("SWITCH_TEST_STAYS");
    setenv("SWITCH_TEST_STAYS_OFF", "1", 1);
    EXPECT_TRUE(isSwitchOn("SWITCH_TEST_STAYS"));
    EXPECT_FALSE(isSwitchOn("SWITCH_TEST_STAYS_OFF"));

    setenv("TARVEX_USE_OLD_MENU_OBSOLETE", "yes", 1);
    EXPECT_FALSE(useCurrentMenus());
    unsetenv("TARVEX_USE_OLD_MENU_OBSOLETE");
    EXPECT_FALSE(useCurrentMenus());
}

}  // namespace
}  // namespace juntora::test
