// Keeping the block mapped under a record that is on its way.
#pragma once

namespace juntora {

/// While one lives the block stays: a close meanwhile (a tool that is told to end while it waits
/// for an answer serves that at once) takes effect when the last of them goes.
class BlockUse {
public:
    BlockUse();
    ~BlockUse();
    BlockUse(const BlockUse&) = delete;
    BlockUse& operator=(const BlockUse&) = delete;
};

}  // namespace juntora
