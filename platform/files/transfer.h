// Bytes through descriptors, past interruptions.
#pragma once

#include <cstddef>
#include <string_view>

namespace juntora::files {

/// False with errno where not all could be written.
bool writeAll(int file, std::string_view bytes);

/// Less than `bytes` at the end of the file, or where it cannot be read any further.
std::size_t readUpTo(int file, char* data, std::size_t bytes);

}  // namespace juntora::files
