// Which texts the bus takes as texts.
#pragma once

#include <string_view>

namespace juntora::automation {

/// Whether a text is UTF-8 as the bus wants it: no overlong forms, no surrogates, no noncharacters,
/// nothing beyond U+10FFFF, and no NUL.
bool isBusText(std::string_view text);

}  // namespace juntora::automation
