// Keeps hubs that start at the same time apart.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Held by a hub from before it looks for a running one until its own window can be found, and
/// while it ends until that window has gone. A hub that dies in between leaves it to the next. To
/// be used by one thread.
class StartLock {
public:
    /// Waits until no other hub is starting or ending.
    explicit StartLock(DWORD milliseconds = 10'000);
    ~StartLock() { Release(); }
    StartLock(const StartLock&) = delete;
    StartLock& operator=(const StartLock&) = delete;

    /// Whether another hub was still starting at the end of the wait.
    bool HasTimedOut() const { return m_bTimedOut; }
    void Release();

private:
    HANDLE m_hMutex;
    bool m_bTimedOut;
};

}  // namespace juntora
