// Drives: C: is everything, D: to Z: are links in a folder of the user's.
#pragma once

#include <string>

namespace juntora::files {

/// The Linux path of a drive's root, not resolved and without a trailing slash but for "/"; empty
/// for what is no letter from C to Z. Makes no system call: the link may not be there.
std::string driveRoot(char letter);

/// A Linux path without links in it as the platform has it, on the drive whose link leads nearest
/// to it, C: if there is none. Where links lead is looked up again when their folder has changed,
/// which may go unseen for 100 ms.
std::string platformPath(const std::string& path);

/// realpath(3); empty with errno on failure.
std::string resolved(const std::string& path);

}  // namespace juntora::files
