// The lock over all of the segment that is more than single words and rings.
#pragma once

#include "platform/desktop/Layout.h"

namespace juntora::desktop {

/// Makes a robust mutex for several processes in zeroed memory. `recursive`: the owner may take it
/// again.
void initialiseLock(pthread_mutex_t* mutex, bool recursive = false);

/// Holds the segment's lock for a scope. If its last holder died, what it left half-done has been
/// thrown away before the scope begins. Test it: the lock is not had when somebody has been stopped
/// for 5 s while holding it. Never held over anything that blocks.
class SegmentLock {
public:
    explicit SegmentLock(Segment& segment);
    ~SegmentLock();
    SegmentLock(const SegmentLock&) = delete;
    SegmentLock& operator=(const SegmentLock&) = delete;

    explicit operator bool() const { return m_held; }

private:
    Segment& m_segment;
    bool m_held = false;
};

}  // namespace juntora::desktop
