#include "tests/support/TestDesktop.h"

namespace juntora::test {

TestDesktop::TestDesktop() { sandbox(); }

TestDesktop::~TestDesktop() { sandbox().endProcesses(); }

DesktopSandbox& TestDesktop::sandbox() {
    static DesktopSandbox shared;
    static const bool entered = (shared.enter(), true);
    static_cast<void>(entered);
    return shared;
}

}  // namespace juntora::test
