// What it costs the hub to be looked at.
#pragma once

#include <sys/types.h>

#include <string>

namespace juntora::bench {

/// Shows the activity list of 10,000 lines on a display in memory (Xvfb, which must be installed)
/// and changes it. The files that are held come to lie in `folder`. This process must be signed on.
void benchScreen(pid_t hub, const std::string& folder);

}  // namespace juntora::bench
