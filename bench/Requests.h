// The requests about files and launches.
#pragma once

namespace juntora::bench {

/// This process must be signed on.
void benchFiles();
void benchLaunch();

}  // namespace juntora::bench
