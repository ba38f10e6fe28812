// The texts of the requests about files.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace juntora {

/// A file and what follows it: an access or bits, and for a search of flags a window too.
///
///     "C:\home\me\my board.opj" 1        the file in double quotes, or
///     C:\home\me\board.opj 1             one word where the text holds no quote
struct FileRequest {
    explicit FileRequest(std::string_view text);

    std::string file;
    std::int32_t number = 0;
    HWND window = 0;          ///< 0 without one.
    bool isComplete = false;  ///< A file and a number could be read.
};

}  // namespace juntora
