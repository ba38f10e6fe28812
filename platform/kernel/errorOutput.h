// Standard error, for a program that must outlive whoever started it.
#pragma once

#include <cstddef>
#include <string_view>

namespace juntora::kernel {

/// Writes the text. What nobody takes is dropped: a reader that has gone does not end this process,
/// and one that does not read does not hold it up.
void WriteToErrors(std::string_view text);

/// Whether a person reads it, on a terminal.
bool ErrorsAreOnTerminal();

/// The columns of that terminal; 0 where it is none, or does not tell.
std::size_t ErrorColumns();

/// For a program that has nothing to say and outlives the one that started it: from here on its
/// standard input is empty, and what it and its libraries write goes nowhere, so that nobody who
/// reads its starter's output waits for its end. Nor does it leave a memory image when a library
/// ends it, as one does that finds no display.
void LeaveStandardStreams();

}  // namespace juntora::kernel
