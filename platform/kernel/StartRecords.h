// What goes from a starter to the process that it starts beside the arguments, and back: the raw
// command line, the show state, and that the child is idle. A record in the segment carries it; the
// child learns its place from JUNTORA_START, which it removes, so that its own children do not
// mistake the record for theirs.
#pragma once

#include <cstdint>
#include <string>

#include "platform/desktop/Attachment.h"

namespace juntora::kernel {

inline constexpr char START_VARIABLE[] = "JUNTORA_START";
inline constexpr int NO_SHOW_STATE = -1;

struct StartPlace {
    std::uint32_t index = desktop::NONE;
    std::uint64_t token = 0;
};

/// Writes a record; NONE when all are in use or the line is too long for one, and the child then
/// makes do with its arguments.
StartPlace offerStart(desktop::Attachment& desktop, const std::string& commandLine, int showState);
/// The value of START_VARIABLE for a child.
std::string startText(const StartPlace& place);
/// The child has ended: nobody needs the record any more.
void endStart(const StartPlace& place);
/// Whether the child has been idle.
bool isInputIdle(const StartPlace& place);
/// Sleeps until it may have become so.
void awaitInputIdle(const StartPlace& place, std::uint32_t milliseconds);

/// What this process's starter wrote; taken at the first call.
struct OwnStart {
    bool hasCommandLine = false;
    std::string commandLine;
    int showState = NO_SHOW_STATE;
};
const OwnStart& ownStart();
/// Tells the starter that this process waits in an empty message loop.
void noteInputIdle();
/// The same where this process waits for an answer of its starter's, if `process` is that: the two
/// would otherwise wait for each other.
void noteWaitFor(std::uint32_t process);

/// Records of a starter that leaves or is gone. The caller holds the lock.
void releaseStartsOf(desktop::Segment& segment, std::uint32_t process);

}  // namespace juntora::kernel
