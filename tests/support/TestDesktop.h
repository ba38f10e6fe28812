// A desktop of a test's own.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/DesktopSandbox.h"

namespace juntora::test {

/// The base of tests that call the layer. A process opens one desktop in its life, so all tests of
/// one process share a sandbox; started by ctest, each test is a process of its own.
class TestDesktop : public ::testing::Test {
protected:
    TestDesktop();
    /// Ends what the test has started by whatever road.
    ~TestDesktop() override;

    static DesktopSandbox& sandbox();
};

}  // namespace juntora::test
