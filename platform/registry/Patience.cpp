#include "platform/registry/Patience.h"

#include <algorithm>
#include <thread>

namespace juntora::registry {

bool Patience::wait(int tries) {
    constexpr std::chrono::milliseconds LONGEST_SLEEP{25};
    const auto now = Clock::now();
    if (tries == 0) {
        m_start = now;
    }
    if (now - m_start >= (m_start < m_vainUntil ? SHORT : LONG)) {
        m_vainUntil = now + LONG;
        return false;
    }
    std::this_thread::sleep_for(std::min(std::chrono::milliseconds(tries + 1), LONGEST_SLEEP));
    return true;
}

}  // namespace juntora::registry
