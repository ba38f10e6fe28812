// The files in which a deployment says what is to be registered: share/voltara/registration/ below
// the install root. docs/registration.md tells what stands in them.
//
// A line is words between blanks. "#" where a word would begin begins a comment. A word with blanks
// in it stands in double quotes, two double quotes in it for one.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace juntora {

using Words = std::vector<std::string>;

/// Takes the words of a line, at least one. Returns what is wrong with it, empty for nothing.
using TakeLine = std::function<std::string(const Words&)>;

/// Reads `name`, and hands its lines to `take` in order. What is wrong, with the file or with a
/// line, goes to standard error with the file and the line's number; lines that are wrong are left
/// out. False if anything was.
bool readDataFile(const char* name, const TakeLine& take);

/// Whether a word can be the name of a file, a folder or a class: it becomes part of paths, of keys
/// and of command lines.
bool isPlainName(std::string_view word);

/// Cuts a line into its words, none for an empty line. Returns what is wrong with it, empty for
/// nothing.
std::string splitDataLine(std::string_view line, Words* words);

}  // namespace juntora
