// A hub in the test's own process.
#pragma once

#include <string>

#include "tests/hub/BareHub.h"
#include "tests/support/TestDesktop.h"

namespace juntora::test {

class HubTest : public TestDesktop, protected BareHub {
protected:
    /// Signs a new tool on.
    HWND attach(const std::string& name);
    static std::string hex(HWND window);
    /// Whether all slots of the block have been given back.
    bool allSlotsFree() const;
};

}  // namespace juntora::test
