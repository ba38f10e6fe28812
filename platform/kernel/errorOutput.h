// Standard error, for a program that must outlive whoever started it.
#pragma once

#include <string_view>

namespace juntora::kernel {

/// Writes the text. What nobody takes is dropped: a reader that has gone does not end this process,
/// and one that does not read does not hold it up.
void WriteToErrors(std::string_view text);

}  // namespace juntora::kernel
