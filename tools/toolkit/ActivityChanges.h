// What has happened between two readings of the activity lines.
#pragma once

#include <vector>

#include "tools/toolkit/ActivityReader.h"

namespace juntora {

struct ActivityChange {
    enum class Kind { CAME, CHANGED, WENT };

    Kind kind;
    ActivityLine line;
    /// Of WENT: no line of this tool is left.
    bool isLastOfTool;
};

/// In the order of the lines; those that went come first. A line that goes while another of the
/// same tool comes has changed: first the same file under another access or mark, then any.
std::vector<ActivityChange> activityChanges(const std::vector<ActivityLine>& before,
                                            const std::vector<ActivityLine>& now);

}  // namespace juntora
